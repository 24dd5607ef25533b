#pragma once

#include <filesystem>

#include "platform/Device.h"

namespace ovinta::platform::linuxos {

/// The directory in which the kernel describes batteries and chargers.
inline constexpr const char* kPowerSupplies = "/sys/class/power_supply";

/// What the batteries of this device, taken together, say in the kernel's files below `root`, which
/// has a directory for each supply; unknown when there is none. Batteries of mice and the like do
/// not count. May be called from any thread.
BatteryState readPowerSupplies(const std::filesystem::path& root);

}  // namespace ovinta::platform::linuxos
