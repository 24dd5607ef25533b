#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Services.h"
#include "platform/linux/Linux.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/position/PositionProvider.h"

namespace ovinta::platform::linux {

/// What `automatic` stands for on this machine: a Flatpak sandbox shows by the file.
PositionSource chosenSource(PositionSource source,
                            const std::filesystem::path& sandboxMark = "/.flatpak-info");

/// The provider of a source. Of the services it uses main queue, geodesy and log.
std::shared_ptr<PositionProvider> makePositionProvider(PositionSource source,
                                                       const std::string& applicationID,
                                                       const std::shared_ptr<dbus::Bus>& systemBus,
                                                       const std::shared_ptr<dbus::Bus>& sessionBus,
                                                       const Services& services);

}  // namespace ovinta::platform::linux
