#include "platform/linux/SystemLocationServices.h"
#include "platform/linux/dbus/Service.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/BusFixture.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using test::beaconFrame;
using test::kBeaconUUID;
using testing::ElementsAre;
using testing::IsEmpty;

const BeaconRegion kAll{kBeaconUUID, {}, {}, "all"};
const BeaconRegion kOne{kBeaconUUID, 1, 1, "one"};

/// Writes down what it is told.
class Delegate : public LocationManagerDelegate {
 public:
  void didUpdateLocations(const std::vector<Location>&) override {}
  void didChangeAuthorizationStatus(AuthorizationStatus) override {}
  void didRangeBeacons(const std::vector<RangedBeacon>& beacons,
                       const BeaconRegion& region) override {
    std::string text = region.identifier + ":";
    for (const RangedBeacon& beacon : beacons) {
      text += " " + std::to_string(beacon.minor) + "@" + std::to_string(beacon.rssi) +
              (beacon.accuracy < 0 ? "?" : "");
    }
    note(text);
  }
  void didEnterRegion(const BeaconRegion& region) override { note("in " + region.identifier); }
  void didExitRegion(const BeaconRegion& region) override { note("out " + region.identifier); }

  std::vector<std::string> told;
  std::function<void()> onTold;

 private:
  void note(const std::string& text) {
    told.push_back(text);
    if (onTold) onTold();
  }
};

/// Grants and denies as the test says.
class Permission : public PositionProvider {
 public:
  void findService(std::function<void(bool)>) override {}
  std::unique_ptr<PositionStream> open(double, PositionHandlers handlers) override {
    set = std::move(handlers.onAccess);
    return nullptr;
  }
  std::function<void(PositionAccess)> set;
};

class BlueZTest : public test::BusTest {
 protected:
  BlueZTest() {
    manager_->setDelegate(&delegate_);
    manager_->startUpdatingLocation();
    permission_->set(PositionAccess::granted);
    time_.runUntilIdle();
  }

  void waitForDiscovery(const std::string& adapter, bool isDiscovering = true) {
    waitUntil([&] { return bluez_.isDiscovering(adapter) == isDiscovering; });
  }

  void advertise(std::uint16_t minor, std::int16_t rssi, const std::string& adapter = "hci0") {
    bluez_.advertise(adapter, "dev_" + std::to_string(minor),
                     beaconFrame({kBeaconUUID, 1, minor, -59}), rssi);
  }

  /// What is told when all that was on its way has arrived, and the seconds have passed.
  std::vector<std::string> pass(std::chrono::seconds seconds) {
    delegate_.told.clear();
    dbus::Service service(bus_, "org.bluez");
    bool isOver = false;
    service.getProperties("/", "org.example", [&](const auto&) { isOver = true; });
    waitUntil([&] { return isOver; });
    time_.advance(seconds);
    return delegate_.told;
  }

  void expectHears(const std::string& adapter) {
    SCOPED_TRACE(adapter);
    waitForDiscovery(adapter);
    pass(1s);
    advertise(1, -60, adapter);
    EXPECT_THAT(pass(1s), ElementsAre("all: 1@-60"));
  }

  void expectRest() {
    waitForDiscovery("hci0", false);
    pass(6s);
    const auto calls = bluez_.service().calls();
    time_.advance(60s);
    EXPECT_EQ(bluez_.service().calls(), calls);
    EXPECT_EQ(time_.pendingTaskCount(), 0u);
  }

  test::BlueZDouble bluez_{daemon_};
  std::shared_ptr<Permission> permission_ = std::make_shared<Permission>();
  SystemLocationServices services_{
      std::make_shared<PositionHub>(permission_, time_.mainQueue()),
      std::make_shared<BeaconScanner>(bus_, time_.mainQueue(), log_, BeaconScanner::Settings{})};
  Delegate delegate_;
  std::unique_ptr<LocationManager> manager_ = services_.makeLocationManager();
};

TEST_F(BlueZTest, ReportsWhatEachRegionHeardOnceASecond) {
  bluez_.addAdapter("hci0");
  manager_->startRangingBeacons(kAll);
  manager_->startRangingBeacons(kOne);
  manager_->startRangingBeacons(kOne);
  EXPECT_THAT(manager_->rangedRegions(), ElementsAre(Region(kAll), Region(kOne)));
  waitForDiscovery("hci0");
  advertise(1, -60);
  advertise(1, -65);
  advertise(2, 127);
  // Of these only the last is a beacon, and of another region.
  bluez_.advertise("hci0", "dev_a", beaconFrame({kBeaconUUID, 1, 3, -59}), -50, 0x004D);
  bluez_.advertise("hci0", "dev_b", {2, 21, 1}, -50);
  bluez_.advertise("hci0", "dev_c", beaconFrame({{}, 1, 1, -59}), -50);
  EXPECT_THAT(pass(1s), ElementsAre("all: 1@-63 2@0?", "one: 1@-63"));
  EXPECT_THAT(pass(1s), ElementsAre("all:", "one:"));
  advertise(2, -80);
  EXPECT_THAT(pass(1s), ElementsAre("all: 2@-80", "one:"));

  // The delegate may end ranging, and the manager itself.
  delegate_.onTold = [&] { manager_->stopRangingBeacons(kOne); };
  EXPECT_THAT(pass(1s), ElementsAre("all:"));
  manager_->startRangingBeacons(kOne);
  delegate_.onTold = [&] { manager_.reset(); };
  EXPECT_THAT(pass(2s), ElementsAre("all:"));
  expectRest();
}

TEST_F(BlueZTest, ResumesWheneverItCan) {
  manager_->startRangingBeacons(kAll);
  EXPECT_THAT(pass(2s), ElementsAre("all:", "all:"));
  bluez_.addAdapter("hci0", false);
  pass(10s);
  EXPECT_EQ(bluez_.service().count("StartDiscovery"), 0u);
  bluez_.setPowered("hci0", true);
  expectHears("hci0");
  bluez_.setPowered("hci0", false);
  pass(1s);
  bluez_.setPowered("hci0", true);
  expectHears("hci0");
  bluez_.endDiscovery("hci0");
  pass(6s);
  expectHears("hci0");

  bluez_.addAdapter("hci1");
  expectHears("hci1");
  bluez_.removeAdapter("hci0");
  expectHears("hci1");
  bluez_.addAdapter("hci0");
  expectHears("hci0");
  bluez_.restart();
  expectHears("hci0");
  expectHears("hci1");

  bluez_.setRefusing(true);
  bluez_.endDiscovery("hci1");
  for (int i = 0; i < 3; ++i) pass(6s);
  EXPECT_FALSE(bluez_.isDiscovering("hci1"));
  bluez_.setRefusing(false);
  pass(6s);
  expectHears("hci1");
  EXPECT_THAT(log_->lines(),
              ElementsAre("org.bluez is not on the bus",
                          "Bluetooth does not look for beacons: Rejected send message"));
}

TEST_F(BlueZTest, RestsWhileNothingIsTrackedOrAllowed) {
  bluez_.addAdapter("hci0");
  expectRest();
  EXPECT_THAT(bluez_.service().calls(), IsEmpty());

  manager_->startRangingBeacons(kOne);
  waitForDiscovery("hci0");
  for (int i = 0; i < 2; ++i) {
    manager_->stopRangingBeacons(kOne);
    manager_->startRangingBeacons(kOne);
    pass(1s);
  }
  EXPECT_EQ(bluez_.service().count("StopDiscovery"), 0u);
  // What was heard before the end belongs to no later second.
  advertise(1, -60);
  pass(0s);
  permission_->set(PositionAccess::denied);
  expectRest();
  permission_->set(PositionAccess::granted);
  waitForDiscovery("hci0");
  EXPECT_THAT(pass(1s), ElementsAre("one:"));
  manager_->stopRangingBeacons(kOne);
  expectRest();
  manager_->startRangingBeacons(kOne);
  waitForDiscovery("hci0");
  advertise(1, -70);
  EXPECT_THAT(pass(1s), ElementsAre("one: 1@-70"));
}

TEST_F(BlueZTest, EntersMonitoredRegionsWhenHeardAndLeavesThemAfterSilence) {
  bluez_.addAdapter("hci0");
  manager_->startMonitoring(BeaconRegion{kBeaconUUID, 1, {}, "one"});
  manager_->startMonitoring(kAll);
  manager_->startMonitoring(kOne);
  EXPECT_THAT(manager_->monitoredRegions(), ElementsAre(Region(kAll), Region(kOne)));
  waitForDiscovery("hci0");
  pass(0s);
  EXPECT_EQ(time_.pendingTaskCount(), 0u) << "nothing to count yet";
  advertise(2, -60);
  EXPECT_THAT(pass(20s), ElementsAre("in all"));
  advertise(1, -60);
  EXPECT_THAT(pass(29s), ElementsAre("in one"));
  manager_->startMonitoring(kOne);
  advertise(2, -60);
  EXPECT_THAT(pass(2s), ElementsAre("out one"));
  EXPECT_THAT(pass(28s), IsEmpty());
  EXPECT_THAT(pass(1s), ElementsAre("out all"));
  delegate_.onTold = [&] { manager_->stopMonitoring(kOne); };
  advertise(1, -60);
  EXPECT_THAT(pass(1s), ElementsAre("in all", "in one")) << "it was entered before";
  EXPECT_THAT(pass(31s), ElementsAre("out all"));
  // A region takes the place of another one of its name, with nothing known.
  advertise(1, -60);
  EXPECT_THAT(pass(0s), ElementsAre("in all"));
  manager_->startMonitoring(BeaconRegion{kBeaconUUID, 1, {}, "all"});
  advertise(1, -60);
  EXPECT_THAT(pass(0s), ElementsAre("in all"));
  manager_->stopMonitoring(kAll);
  expectRest();
}

}  // namespace
}  // namespace ovinta::platform::linux
