#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Services.h"
#include "platform/linux/Linux.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// The file by which a Flatpak sandbox shows.
inline constexpr const char* kSandboxMark = "/.flatpak-info";

bool isSandboxed(const std::filesystem::path& sandboxMark = kSandboxMark);

/// What `automatic` stands for on this machine.
PositionSource chosenSource(PositionSource source,
                            const std::filesystem::path& sandboxMark = kSandboxMark);

/// The provider of a source. Of the services it uses main queue, geodesy and log.
std::shared_ptr<PositionProvider> makePositionProvider(PositionSource source,
                                                       const std::string& applicationID,
                                                       const std::shared_ptr<dbus::Bus>& systemBus,
                                                       const std::shared_ptr<dbus::Bus>& sessionBus,
                                                       const Services& services);

}  // namespace ovinta::platform::linuxos
