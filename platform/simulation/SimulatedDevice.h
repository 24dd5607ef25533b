#pragma once

#include <atomic>

#include "../Device.h"

namespace ovinta::platform::simulation {

/// A device whose battery the test decides; unplugged at first. May be used from any thread.
class SimulatedDevice : public Device {
 public:
  void setBatteryMonitoringEnabled(bool enabled) override { isMonitored_ = enabled; }
  BatteryState batteryState() const override {
    return isMonitored_ ? state_.load() : BatteryState::unknown;
  }

  /// Seen through `batteryState` while monitoring is on.
  void setBatteryState(BatteryState state) { state_ = state; }
  /// What `setBatteryMonitoringEnabled` was last told; false at first.
  bool isBatteryMonitoringEnabled() const { return isMonitored_; }

 private:
  std::atomic<BatteryState> state_{BatteryState::unplugged};
  std::atomic<bool> isMonitored_{false};
};

}  // namespace ovinta::platform::simulation
