#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Services.h"
#include "platform/linux/Linux.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// The file that tells that the process runs in a Flatpak sandbox.
inline constexpr const char* kSandboxMark = "/.flatpak-info";

bool isSandboxed(const std::filesystem::path& sandboxMark = kSandboxMark);

/// The source itself or, for `automatic`, the one that this machine calls for.
PositionSource chosenSource(PositionSource source,
                            const std::filesystem::path& sandboxMark = kSandboxMark);

/// Makes the provider of a source, which uses main queue, geodesy and log of the services.
std::shared_ptr<PositionProvider> makePositionProvider(PositionSource source,
                                                       const std::string& applicationID,
                                                       const std::shared_ptr<dbus::Bus>& systemBus,
                                                       const std::shared_ptr<dbus::Bus>& sessionBus,
                                                       const Services& services);

}  // namespace ovinta::platform::linuxos
