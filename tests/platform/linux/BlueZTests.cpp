#include <gmock/gmock.h>

#include "platform/linux/bluez/BeaconTracker.h"
#include "platform/linux/dbus/Service.h"
#include "platform/simulation/VirtualTime.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/RecordingLog.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using test::beaconFrame;
using test::kBeaconUUID;
using testing::ElementsAre;
using testing::IsEmpty;

const BeaconRegion kAll{kBeaconUUID, {}, {}, "all"};
const BeaconRegion kOne{kBeaconUUID, 1, 1, "one"};

class BlueZTest : public testing::Test {
 protected:
  BlueZTest() { tracker_->setEnabled(true); }

  std::unique_ptr<BeaconTracker> makeTracker() {
    BeaconHandlers handlers;
    handlers.onRanged = [this](const auto& beacons, const BeaconRegion& region) {
      std::string text = region.identifier + ":";
      for (const RangedBeacon& beacon : beacons) {
        text += " " + std::to_string(beacon.minor) + "@" + std::to_string(beacon.rssi);
        if (beacon.accuracy < 0) text += "?";
      }
      told_.push_back(text);
      if (onTold_) onTold_();
    };
    handlers.onEntered = [this](const BeaconRegion& region) {
      told_.push_back("in " + region.identifier);
      if (onTold_) onTold_();
    };
    handlers.onLeft = [this](const auto& region) { told_.push_back("out " + region.identifier); };
    return std::make_unique<BeaconTracker>(scanner_, time_.mainQueue(), 2, std::move(handlers));
  }

  /// Lets everything arrive that was on its way.
  void settle() {
    dbus::Service service(bus_, "org.bluez");
    bool isOver = false;
    service.getProperties("/", "org.freedesktop.DBus.ObjectManager",
                          [&](const auto&) { isOver = true; });
    ASSERT_TRUE(time_.waitUntil([&] { return isOver; }, 10s));
  }

  void waitForDiscovery(const std::string& adapter, bool isDiscovering = true) {
    ASSERT_TRUE(
        time_.waitUntil([&] { return bluez_.isDiscovering(adapter) == isDiscovering; }, 10s));
    settle();
  }

  void advertise(std::uint16_t minor, std::int16_t rssi, const std::string& adapter = "hci0") {
    bluez_.advertise(adapter, "dev_" + std::to_string(minor),
                     beaconFrame({kBeaconUUID, 1, minor, -59}), rssi);
  }

  /// What is told when the seconds pass.
  std::vector<std::string> pass(std::chrono::seconds seconds) {
    settle();
    told_.clear();
    time_.advance(seconds);
    return told_;
  }

  void expectHears(const std::string& adapter) {
    SCOPED_TRACE(adapter);
    waitForDiscovery(adapter);
    pass(1s);
    advertise(1, -60, adapter);
    EXPECT_THAT(pass(1s), ElementsAre("all: 1@-60"));
  }

  test::PrivateBus daemon_;
  simulation::VirtualTime time_{Date{}};
  test::BlueZDouble bluez_{daemon_};
  std::shared_ptr<test::RecordingLog> log_ = std::make_shared<test::RecordingLog>();
  std::shared_ptr<dbus::Bus> bus_ =
      std::make_shared<dbus::Bus>(daemon_.address(), time_.mainQueue(), log_);
  std::shared_ptr<BeaconScanner> scanner_ =
      std::make_shared<BeaconScanner>(bus_, time_.mainQueue(), log_);
  std::vector<std::string> told_;
  std::function<void()> onTold_;
  std::unique_ptr<BeaconTracker> tracker_ = makeTracker();
};

TEST_F(BlueZTest, ReportsWhatEachRegionHeardOnceASecond) {
  bluez_.addAdapter("hci0");
  tracker_->startRanging(kAll);
  tracker_->startRanging(kOne);
  tracker_->startRanging(kOne);
  EXPECT_THAT(tracker_->rangedRegions(), ElementsAre(kAll, kOne));
  waitForDiscovery("hci0");
  advertise(1, -60);
  advertise(1, -65);
  advertise(2, 127);
  // Of these only the last is a beacon, and of another region.
  bluez_.advertise("hci0", "dev_a", beaconFrame({kBeaconUUID, 1, 3, -59}), -50, 0x004D);
  bluez_.advertise("hci0", "dev_b", {2, 21, 1}, -50);
  bluez_.tell("hci0", "dev_c",
              {{"ManufacturerData", dbus::write("none")}, {"RSSI", dbus::write(1)}});
  bluez_.advertise("hci0", "dev_d", beaconFrame({{}, 1, 1, -59}), -50);
  EXPECT_THAT(pass(1s), ElementsAre("all: 1@-63 2@0?", "one: 1@-63"));
  EXPECT_THAT(pass(1s), ElementsAre("all:", "one:"));
  advertise(2, -80);
  EXPECT_THAT(pass(1s), ElementsAre("all: 2@-80", "one:"));

  // A handler may end ranging, and the tracker itself.
  onTold_ = [&] { tracker_->stopRanging(kOne); };
  EXPECT_THAT(pass(1s), ElementsAre("all:"));
  tracker_->startRanging(kOne);
  onTold_ = [&] { tracker_.reset(); };
  EXPECT_THAT(pass(2s), ElementsAre("all:"));
  waitForDiscovery("hci0", false);
}

TEST_F(BlueZTest, ResumesWheneverItCan) {
  tracker_->startRanging(kAll);
  EXPECT_THAT(pass(2s), ElementsAre("all:", "all:"));
  bluez_.addAdapter("hci0", false);
  EXPECT_THAT(pass(10s), testing::Contains("all:").Times(10));
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
  EXPECT_THAT(log_->lines(), ElementsAre("org.bluez is not on the bus"));

  bluez_.refuse(dbus::Failure{dbus::kAccessDenied, "Rejected send message"});
  bluez_.endDiscovery("hci1");
  for (int i = 0; i < 3; ++i) pass(6s);
  EXPECT_FALSE(bluez_.isDiscovering("hci1"));
  EXPECT_THAT(log_->lines(),
              ElementsAre("org.bluez is not on the bus",
                          "Bluetooth does not look for beacons: Rejected send message"));
  bluez_.refuse(std::nullopt);
  pass(6s);
  expectHears("hci1");
}

TEST_F(BlueZTest, RestsWhileNothingIsTracked) {
  bluez_.addAdapter("hci0");
  time_.advance(60s);
  EXPECT_THAT(bluez_.service().calls(), IsEmpty());
  EXPECT_EQ(time_.pendingTaskCount(), 0u);

  tracker_->startRanging(kAll);
  waitForDiscovery("hci0");
  for (const BeaconRegion& region : {kAll, kOne}) {
    tracker_->stopRanging(kAll);
    tracker_->stopMonitoring(kAll.identifier);
    tracker_->startRanging(region);
    tracker_->startMonitoring(region);
    pass(1s);
  }
  EXPECT_EQ(bluez_.service().count("StopDiscovery"), 0u);
  EXPECT_THAT(tracker_->monitoredRegions(), ElementsAre(kOne));

  const auto expectRest = [&] {
    waitForDiscovery("hci0", false);
    pass(6s);
    const auto calls = bluez_.service().calls();
    EXPECT_THAT(pass(60s), IsEmpty());
    EXPECT_EQ(bluez_.service().calls(), calls);
    EXPECT_EQ(time_.pendingTaskCount(), 0u);
  };
  tracker_->setEnabled(false);
  expectRest();
  tracker_->setEnabled(true);
  waitForDiscovery("hci0");
  // What was heard before the end belongs to no later second.
  advertise(1, -60);
  settle();
  tracker_->stopRanging(kOne);
  tracker_->stopMonitoring(kOne.identifier);
  expectRest();
  tracker_->startRanging(kOne);
  EXPECT_THAT(pass(1s), ElementsAre("one:"));
}

TEST_F(BlueZTest, EntersMonitoredRegionsWhenHeardAndLeavesThemAfterSilence) {
  bluez_.addAdapter("hci0");
  tracker_->startMonitoring({kBeaconUUID, 7, {}, "one"});
  tracker_->startMonitoring(kAll);
  tracker_->startMonitoring(kOne);
  EXPECT_THAT(tracker_->monitoredRegions(), ElementsAre(kAll, kOne));
  waitForDiscovery("hci0");
  EXPECT_EQ(time_.pendingTaskCount(), 0u) << "nothing to count yet";
  advertise(2, -60);
  settle();
  EXPECT_THAT(told_, ElementsAre("in all"));
  EXPECT_THAT(pass(20s), IsEmpty());
  advertise(1, -60);
  settle();
  EXPECT_THAT(told_, ElementsAre("in one"));
  EXPECT_THAT(pass(29s), IsEmpty());
  EXPECT_THAT(pass(2s), ElementsAre("out all", "out one"));
  EXPECT_EQ(time_.pendingTaskCount(), 0u);

  onTold_ = [&] { tracker_.reset(); };
  told_.clear();
  advertise(1, -60);
  settle();
  EXPECT_THAT(told_, ElementsAre("in all"));
}

}  // namespace
}  // namespace ovinta::platform::linux
