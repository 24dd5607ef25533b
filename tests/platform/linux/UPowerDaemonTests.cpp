// The real UPower on a bus of its own, with a battery that umockdev plays to it.
#include <unistd.h>

#include "platform/linux/device/SystemDevice.h"
#include "replay/ChildProcess.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr const char* kDaemon = "/usr/libexec/upowerd";
constexpr const char* kPlayer = "/usr/bin/umockdev-run";

std::string battery(const char* status) {
  return "P: /devices/virtual/power_supply/BAT0\nE: SUBSYSTEM=power_supply\n"
         "E: POWER_SUPPLY_NAME=BAT0\nA: type=Battery\nA: present=1\nA: status=" +
         std::string(status) +
         "\nA: energy_full=60000000\nA: energy_full_design=80000000\nA: energy_now=48000000\n"
         "A: voltage_now=12000000\nA: capacity=80\n";
}

using UPowerDaemonTest = test::BusTest;

TEST_F(UPowerDaemonTest, ItsBatteryIsRead) {
  if (access(kDaemon, X_OK) != 0 || access(kPlayer, X_OK) != 0 || geteuid() != 0) {
    GTEST_SKIP() << "takes root and the packages upower and umockdev";
  }
  const auto description = folder_.path() / "battery.umockdev";
  for (const auto& [status, state] : {std::pair("Charging", BatteryState::charging),
                                      {"Discharging", BatteryState::unplugged},
                                      {"Full", BatteryState::full}}) {
    test::writeFile(description, battery(status));
    const replay::ChildProcess daemon({kPlayer, "--device", description.string(), "--", kDaemon},
                                      {"DBUS_SYSTEM_BUS_ADDRESS=" + daemon_.address()});
    SystemDevice device(bus_, time_.clock(), folder_.path() / "none");
    device.setBatteryMonitoringEnabled(true);
    const auto isRead = [&, expected = state] { return device.batteryState() == expected; };
    for (int attempt = 0; attempt < 100 && !isRead(); ++attempt) {
      time_.advance(std::chrono::seconds(11));
      time_.waitUntil(isRead, std::chrono::milliseconds(300));
    }
    EXPECT_TRUE(isRead()) << status;
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
