#include "platform/linux/dbus/Service.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/BusFixture.h"
#include "tests/support/RecordingDelegate.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using test::beaconFrame;
using test::kBeaconUUID;
using testing::ElementsAre;
using testing::IsEmpty;

const IdentifiedBeaconRegion kAll{kBeaconUUID, {}, {}, "all"};
const IdentifiedBeaconRegion kOne{kBeaconUUID, 1, 1, "one"};

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
    delegate_.take();
    passBy("org.bluez");
    time_.advance(seconds);
    return delegate_.take();
  }

  void expectHears(const std::string& adapter) {
    SCOPED_TRACE(adapter);
    waitForDiscovery(adapter);
    pass(1s);
    advertise(1, -60, adapter);
    EXPECT_THAT(pass(1s), ElementsAre("all: 1@-60"));
  }

  void expectResumes(const std::string& adapter) {
    for (int i = 0; i < 20 && !bluez_.isDiscovering(adapter); ++i) pass(6s);
    expectHears(adapter);
  }

  void expectRest() {
    waitForDiscovery("hci0", false);
    pass(6s);
    const auto calls = bluez_.service().calls();
    time_.advance(60s);
    EXPECT_EQ(bluez_.service().calls(), calls);
    expectNoTimer();
  }

  test::BlueZDouble bluez_{daemon_};
  std::shared_ptr<Permission> permission_ = std::make_shared<Permission>();
  SystemLocationServices services_{
      std::make_shared<PositionHub>(permission_, time_.mainQueue()),
      std::make_shared<BeaconScanner>(bus_, time_.mainQueue(), log_, BeaconScanner::Options{})};
  test::RecordingDelegate delegate_;
  std::unique_ptr<LocationManager> manager_ = services_.makeLocationManager();
};

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
  advertise(1, -60, "hci0");
  advertise(1, -70, "hci1");
  EXPECT_THAT(pass(1s), ElementsAre("all: 1@-65"));
  bluez_.restart();
  expectHears("hci0");
  expectHears("hci1");

  for (const auto* method : {"GetManagedObjects", "SetDiscoveryFilter", "StartDiscovery"}) {
    bluez_.fail(method, {dbus::kAccessDenied, "Rejected send message"});
    bluez_.restart();
    for (const auto* adapter : {"hci0", "hci1"}) expectResumes(adapter);
  }
  // As while somebody else's stop is under way: nothing discovers then.
  bluez_.fail("StartDiscovery", {"org.bluez.Error.InProgress", "Operation already in progress"});
  bluez_.restart();
  for (const auto* adapter : {"hci0", "hci1"}) expectResumes(adapter);
  bluez_.service().setForbidden(true);
  bluez_.removeAdapter("hci1");
  bluez_.addAdapter("hci1");
  for (int i = 0; i < 3; ++i) pass(6s);
  bluez_.service().setForbidden(false);
  expectResumes("hci1");
  EXPECT_THAT(log_->lines(),
              ElementsAre("org.bluez is not on the bus",
                          "Bluetooth does not look for beacons: Rejected send message"));
}

TEST_F(BlueZTest, HearsWhatIsGoneOnlyOnceItIsBack) {
  bluez_.addAdapter("hci0");
  manager_->startRangingBeacons(kAll);
  expectHears("hci0");
  for (const bool isWholeAdapter : {false, true}) {
    SCOPED_TRACE(isWholeAdapter);
    if (isWholeAdapter) {
      bluez_.removeAdapter("hci0");
      EXPECT_THAT(pass(2s), ElementsAre("all:", "all:"));
      bluez_.addAdapter("hci0");
      waitForDiscovery("hci0");
    } else {
      bluez_.removeDevice("hci0", "dev_1");
    }
    // Something else has the address now.
    bluez_.advertise("hci0", "dev_1", {}, -50);
    EXPECT_THAT(pass(1s), ElementsAre("all:"));
    advertise(1, -70);
    EXPECT_THAT(pass(1s), ElementsAre("all: 1@-70"));
  }
  manager_.reset();
  expectRest();
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
  manager_->startMonitoring(kOne);
  expectRest();
  bluez_.fail("StartDiscovery", {dbus::kNoReply, "late"});
  manager_->startRangingBeacons(kOne);
  waitForDiscovery("hci0");
  manager_->stopRangingBeacons(kOne);
  expectRest();
  // One that is stopped before its start is answered.
  bluez_.holdStarts();
  const auto starts = bluez_.service().count("StartDiscovery");
  manager_->startRangingBeacons(kOne);
  waitUntil([&] { return bluez_.service().count("StartDiscovery") > starts; });
  const auto stops = bluez_.service().count("StopDiscovery");
  manager_->stopRangingBeacons(kOne);
  waitUntil([&] { return bluez_.service().count("StopDiscovery") > stops; });
  bluez_.answerStarts();
  waitUntil([&] { return bluez_.service().count("StopDiscovery") > stops + 1; });
  expectRest();
  manager_->startRangingBeacons(kOne);
  waitForDiscovery("hci0");
  advertise(1, -70);
  EXPECT_THAT(pass(1s), ElementsAre("one: 1@-70"));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
