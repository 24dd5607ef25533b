#pragma once

#include "platform/Device.h"

namespace ovinta::platform::linux {

/// A device that knows nothing of a battery.
class UnknownBatteryDevice : public Device {
 public:
  void setBatteryMonitoringEnabled(bool) override {}
  BatteryState batteryState() const override { return BatteryState::unknown; }
};

}  // namespace ovinta::platform::linux
