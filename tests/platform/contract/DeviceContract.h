#pragma once

#include <gtest/gtest.h>

#include "platform/Device.h"

namespace ovinta::platform::contract {

/// What every device promises. A rig is a fixture with `device_`, a pointer, `setBattery(state)`
/// and `waitUntil(condition)`, which lets time pass until the device has noticed.
template <class Rig>
class DeviceContract : public Rig {};
TYPED_TEST_SUITE_P(DeviceContract);

TYPED_TEST_P(DeviceContract, TheBatteryIsKnownWhileMonitoringIsOn) {
  Device& device = *this->device_;
  for (const auto state : {BatteryState::full, BatteryState::charging, BatteryState::unplugged}) {
    EXPECT_EQ(device.batteryState(), BatteryState::unknown);
    device.setBatteryMonitoringEnabled(true);
    for (const auto now : {state, BatteryState::unknown, state}) {
      this->setBattery(now);
      this->waitUntil([&] { return device.batteryState() == now; });
    }
    device.setBatteryMonitoringEnabled(false);
  }
}

REGISTER_TYPED_TEST_SUITE_P(DeviceContract, TheBatteryIsKnownWhileMonitoringIsOn);

}  // namespace ovinta::platform::contract
