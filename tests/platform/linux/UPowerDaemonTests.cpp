// The real UPower on a bus of its own, with a battery that umockdev plays to it.
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/linux/SystemDevice.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/VirtualTime.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Files.h"
#include "tests/support/PrivateBus.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDaemon = "/usr/libexec/upowerd";
constexpr const char* kPlayer = "/usr/bin/umockdev-run";

std::string battery(const char* status) {
  return "P: /devices/virtual/power_supply/BAT0\nE: SUBSYSTEM=power_supply\n"
         "E: POWER_SUPPLY_NAME=BAT0\nA: type=Battery\nA: present=1\nA: status=" +
         std::string(status) +
         "\nA: energy_full=60000000\nA: energy_full_design=80000000\nA: energy_now=48000000\n"
         "A: voltage_now=12000000\nA: capacity=80\n";
}

TEST(UPowerDaemonTest, ItsBatteryIsRead) {
  if (access(kDaemon, X_OK) != 0 || access(kPlayer, X_OK) != 0 || geteuid() != 0) {
    GTEST_SKIP() << "takes root and the packages upower and umockdev";
  }
  const struct {
    const char* status;
    BatteryState expected;
  } cases[] = {{"Charging", BatteryState::charging},
               {"Discharging", BatteryState::unplugged},
               {"Full", BatteryState::full}};
  for (const auto& tested : cases) {
    const test::PrivateBus bus;
    const test::TemporaryDirectory folder;
    const auto description = folder.path() / "battery.umockdev";
    test::writeFile(description, battery(tested.status));
    const test::ChildProcess daemon({kPlayer, "--device", description.string(), "--", kDaemon},
                                    {"DBUS_SYSTEM_BUS_ADDRESS=" + bus.address()});
    simulation::VirtualTime time{Date{}};
    SystemDevice device(std::make_shared<dbus::Bus>(bus.address(), time.mainQueue(),
                                                    std::make_shared<simulation::RecordingLog>()),
                        time.mainQueue(), folder.path() / "none");
    device.setBatteryMonitoringEnabled(true);
    EXPECT_TRUE(time.waitUntil([&] { return device.batteryState() == tested.expected; }, 20s))
        << tested.status;
  }
}

}  // namespace
}  // namespace ovinta::platform::linux
