#include "platform/linux/SystemDevice.h"

#include "platform/linux/PowerSupplies.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::linux {
namespace {

using dbus::write;
using test::ServiceDouble;

constexpr const char* kPath = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* kDevice = "org.freedesktop.UPower.Device";

/// The kernel's files for supplies, each given by what its files say.
class SupplyFolder {
 public:
  void add(std::initializer_list<std::pair<const char*, const char*>> files) {
    const auto supply = folder_.path() / std::to_string(count_++);
    create_directory(supply);
    for (const auto& [name, text] : files) test::writeFile(supply / name, std::string(text) + "\n");
  }
  void addBattery(const char* status) { add({{"type", "Battery"}, {"status", status}}); }
  const std::filesystem::path& path() const { return folder_.path(); }

 private:
  test::TemporaryDirectory folder_;
  int count_ = 0;
};

TEST(PowerSupplyTest, OneThatChargesCountsMoreThanOneThatDischargesThanOneThatIsFull) {
  SupplyFolder folder;
  EXPECT_EQ(readPowerSupplies(folder.path() / "none"), BatteryState::unknown);
  folder.add({{"type", "Mains"}, {"status", "Charging"}});
  folder.add({{"type", "Battery"}, {"scope", "Device"}, {"status", "Charging"}});
  folder.add({{"type", "Battery"}, {"present", "0"}, {"status", "Charging"}});
  folder.addBattery("Unknown");
  EXPECT_EQ(readPowerSupplies(folder.path()), BatteryState::unknown);
  folder.addBattery("Full");
  EXPECT_EQ(readPowerSupplies(folder.path()), BatteryState::full);
  folder.addBattery("Not charging");
  EXPECT_EQ(readPowerSupplies(folder.path()), BatteryState::charging);
  folder.addBattery("Discharging");
  EXPECT_EQ(readPowerSupplies(folder.path()), BatteryState::unplugged);
  folder.addBattery("Charging");
  EXPECT_EQ(readPowerSupplies(folder.path()), BatteryState::charging);
}

class SystemDeviceTest : public test::BusTest {
 protected:
  SystemDeviceTest() { upower_.addObject(kPath, kDevice, state(2, true)); }

  static dbus::Properties state(std::uint32_t number, bool isPresent) {
    return {{"State", write(number)}, {"IsPresent", write(isPresent)}};
  }

  void expectSoon(BatteryState state) {
    SCOPED_TRACE(static_cast<int>(state));
    waitUntil([&] { return device_.batteryState() == state; });
  }

  SupplyFolder supplies_;
  ServiceDouble upower_{
      daemon_, "org.freedesktop.UPower", {}, [](const auto&) { return ServiceDouble::NoAnswer{}; }};
  SystemDevice device_{bus_, time_.mainQueue(), supplies_.path()};
};

TEST_F(SystemDeviceTest, FollowsUPowerWhileMonitoringIsOn) {
  device_.setBatteryMonitoringEnabled(true);
  const struct {
    std::uint32_t number;
    BatteryState expected;
  } cases[] = {{1, BatteryState::charging},  {3, BatteryState::unplugged},
               {4, BatteryState::full},      {6, BatteryState::unplugged},
               {5, BatteryState::charging},  {0, BatteryState::unknown},
               {2, BatteryState::unplugged}, {7, BatteryState::unknown}};
  for (const auto& tested : cases) {
    upower_.change(kPath, kDevice, {{"State", write(tested.number)}});
    expectSoon(tested.expected);
  }
  upower_.change(kPath, kDevice, state(1, true));
  expectSoon(BatteryState::charging);
  upower_.change(kPath, kDevice, {{"IsPresent", write(false)}});
  expectSoon(BatteryState::unknown);
}

TEST_F(SystemDeviceTest, ReadsTheKernelsFilesWhileThereIsNoUPower) {
  supplies_.addBattery("Full");
  upower_.vanish();
  device_.setBatteryMonitoringEnabled(true);
  expectSoon(BatteryState::full);
  upower_.appear();
  expectSoon(BatteryState::unplugged);
  upower_.vanish();
  expectSoon(BatteryState::full);
  daemon_.stop();
  expectSoon(BatteryState::full);
}

}  // namespace
}  // namespace ovinta::platform::linux
