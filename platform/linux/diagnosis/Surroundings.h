#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/Linux.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/device/PowerSupplies.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// What a diagnosis looks at.
struct Surroundings {
  std::shared_ptr<MainQueue> mainQueue;
  std::shared_ptr<dbus::Bus> systemBus;
  std::shared_ptr<dbus::Bus> sessionBus;
  std::string applicationID;
  /// The source that is used, never `automatic`.
  PositionSource positionSource = PositionSource::geoclue;
  std::shared_ptr<PositionProvider> positionProvider;
  std::optional<std::filesystem::path> dataDirectory;
  bool usesNotifyAgent = true;
  std::filesystem::path powerSupplies = kPowerSupplies;
  /// A directory that exists as soon as the kernel has loaded its part of Bluetooth.
  std::filesystem::path bluetoothClass = "/sys/class/bluetooth";
};

}  // namespace ovinta::platform::linuxos
