#include "platform/linux/device/SystemDevice.h"

#include "platform/linux/device/PowerSupplies.h"
#include "platform/linux/device/UPower.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using dbus::write;
using test::ServiceDouble;

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
  for (const auto& [added, expected] : {std::pair("Unknown", BatteryState::unknown),
                                        {"Full", BatteryState::full},
                                        {"Not charging", BatteryState::charging},
                                        {"Discharging", BatteryState::unplugged},
                                        {"Charging", BatteryState::charging}}) {
    folder.addBattery(added);
    EXPECT_EQ(readPowerSupplies(folder.path()), expected) << added;
  }
}

class SystemDeviceTest : public test::BusTest {
 protected:
  SystemDeviceTest() { upower_.addObject(kUPowerDisplayDevice, kUPowerDevice, state(2, true)); }

  static dbus::Properties state(std::uint32_t number, bool isPresent) {
    return {{"State", write(number)}, {"IsPresent", write(isPresent)}};
  }

  /// The next question finds an answer that is too old, and the one after it the new one.
  void expectSoon(BatteryState state) {
    SCOPED_TRACE(static_cast<int>(state));
    time_.advance(11s);
    waitUntil([&] { return device_.batteryState() == state; });
  }

  SupplyFolder supplies_;
  ServiceDouble upower_{daemon_, kUPowerName};
  SystemDevice device_{bus_, time_.clock(), supplies_.path()};
};

TEST_F(SystemDeviceTest, AsksUPowerAtQuestionsWhileMonitoringIsOn) {
  supplies_.addBattery("Full");
  device_.setBatteryMonitoringEnabled(true);
  EXPECT_EQ(device_.batteryState(), BatteryState::full) << "UPower has not answered yet";
  const std::tuple<std::uint32_t, bool, BatteryState> cases[] = {
      {3, true, BatteryState::unplugged}, {5, true, BatteryState::charging},
      {6, true, BatteryState::unplugged}, {7, true, BatteryState::unknown},
      {1, true, BatteryState::charging},  {1, false, BatteryState::unknown},
      {2, true, BatteryState::unplugged}};
  for (const auto& [number, isPresent, expected] : cases) {
    upower_.addObject(kUPowerDisplayDevice, kUPowerDevice, state(number, isPresent));
    expectSoon(expected);
  }
  upower_.addObject(kUPowerDisplayDevice, kUPowerDevice, state(1, true));
  time_.advance(9s);
  EXPECT_EQ(device_.batteryState(), BatteryState::unplugged) << "fresh enough";
  time_.advance(1h);
  expectNoTimer();
  EXPECT_EQ(device_.batteryState(), BatteryState::full) << "the files, for want of anything newer";
}

TEST_F(SystemDeviceTest, AnAnswerIsAsOldAsItsQuestion) {
  upower_.sync([&] {
    device_.setBatteryMonitoringEnabled(true);
    EXPECT_EQ(device_.batteryState(), BatteryState::unknown);
    time_.advance(11s);
  });
  passBy(kUPowerName);
  upower_.addObject(kUPowerDisplayDevice, kUPowerDevice, state(1, true));
  waitUntil([&] { return device_.batteryState() == BatteryState::charging; });
}

TEST_F(SystemDeviceTest, ReadsTheKernelsFilesWheneverUPowerDoesNotAnswer) {
  supplies_.addBattery("Full");
  device_.setBatteryMonitoringEnabled(true);
  expectSoon(BatteryState::unplugged);
  upower_.removeObject(kUPowerDisplayDevice);
  expectSoon(BatteryState::full);
  upower_.addObject(kUPowerDisplayDevice, kUPowerDevice, state(1, true));
  expectSoon(BatteryState::charging);
  upower_.vanish();
  expectSoon(BatteryState::full);
  upower_.appear();
  expectSoon(BatteryState::charging);
  daemon_.stop();
  expectSoon(BatteryState::full);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
