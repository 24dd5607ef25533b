#pragma once

#include <array>
#include <string_view>

#include "EnumNames.h"

namespace ovinta::platform {

/// How the battery stands: not known, or not monitored; running down; being charged; full while
/// plugged in. Has a `name`.
enum class BatteryState { unknown = 0, unplugged = 1, charging = 2, full = 3 };

/// The states as logs and trips write them, in the order of their values.
inline constexpr std::array<std::string_view, 4> kBatteryStateNames{"unknown", "unplugged",
                                                                    "charging", "full"};
template <>
struct EnumNames<BatteryState> : NamesInOrder<kBatteryStateNames> {};

/// The device that the application runs on. May be used from any thread.
class Device {
 public:
  virtual ~Device() = default;

  /// Monitoring is off at first; while it is off the state reads as unknown. Returns at once.
  virtual void setBatteryMonitoringEnabled(bool enabled) = 0;

  /// The state last known, without waiting for a newer one.
  virtual BatteryState batteryState() const = 0;
};

}  // namespace ovinta::platform
