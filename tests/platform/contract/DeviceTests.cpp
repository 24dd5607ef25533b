// What every device promises.
#include <gtest/gtest.h>

#include "platform/linux/device/SystemDevice.h"
#include "platform/linux/device/UPower.h"
#include "platform/simulation/SimulatedDevice.h"
#include "tests/support/BusFixture.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform {
namespace {

class SimulatedDeviceRig : public testing::Test {
 protected:
  void setBattery(BatteryState state) { device_.setBatteryState(state); }
  void waitUntil(const std::function<bool()>& condition) { EXPECT_TRUE(condition()); }

  simulation::SimulatedDevice device_;
};

class LinuxDeviceRig : public test::BusTest {
 protected:
  void setBattery(BatteryState state) {
    constexpr std::array kNumbers{0U, 2U, 1U, 4U};
    upower_.change(linuxos::kUPowerDisplayDevice, linuxos::kUPowerDevice,
                   {{"State", test::dbus::write(kNumbers.at(static_cast<std::size_t>(state)))},
                    {"IsPresent", test::dbus::write(true)}});
  }

  /// The next question finds an answer that is too old.
  void waitUntil(const std::function<bool()>& condition) {
    time_.advance(std::chrono::seconds(11));
    BusTest::waitUntil(condition);
  }

  test::ServiceDouble upower_{daemon_, linuxos::kUPowerName};
  linuxos::SystemDevice device_{bus_, time_.clock(), folder_.path()};
};

template <class Rig>
class DeviceTest : public Rig {};

using Rigs = testing::Types<SimulatedDeviceRig, LinuxDeviceRig>;
TYPED_TEST_SUITE(DeviceTest, Rigs);

TYPED_TEST(DeviceTest, TheBatteryIsKnownWhileMonitoringIsOn) {
  Device& device = this->device_;
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

}  // namespace
}  // namespace ovinta::platform
