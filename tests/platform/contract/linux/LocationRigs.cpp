// Position, beacons and notifications, with GeoClue, BlueZ and the desktop played by doubles.
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/beacons/BlueZObjects.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "tests/platform/contract/LocationManagerContract.h"
#include "tests/platform/contract/UserNotificationCenterContract.h"
#include "tests/platform/linux/UserNotificationFixture.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/GeoClueDouble.h"

namespace ovinta::platform::contract {
namespace {

struct LocationRig : test::BusTest {
  LocationRig() { bluez_.addAdapter("hci0"); }
  void settle() {
    // What the library does in turn with the services takes a few steps.
    for (int step = 0; step < 10; ++step) {
      for (const char* name : {linuxos::kGeoClueName, linuxos::kBlueZName}) passBy(name);
    }
  }
  void advance(TimeInterval interval) { time_.advance(interval); }
  bool isIdle() {
    return time_.waitUntil([&] { return time_.pendingTaskCount() == 0; }, std::chrono::seconds(30));
  }
  void allow(bool isAllowed) {
    if (services_->authorizationStatus() == kAuthorizationNotDetermined) hub_->askPermission();
    settle();
    geoclue_.switchLocation(isAllowed);
    settle();
  }
  void go(double metresNorth, double accuracy = 5) {
    settle();
    geoclue_.feed(simulation::northOfSite(metresNorth), accuracy);
    settle();
  }
  void passSecond(const std::vector<std::uint16_t>& minors) {
    settle();
    bluez_.advertise("hci0", "dev_foreign", test::beaconFrame({kForeignUUID, 1, 1, -59}), -60);
    for (const auto minor : minors) {
      bluez_.advertise("hci0", "dev_" + std::to_string(minor),
                       test::beaconFrame({kBeaconUUID, 1, minor, -59}), -60);
    }
    settle();
    time_.advance(std::chrono::seconds(1));
  }

  test::GeoClueDouble geoclue_{daemon_};
  test::BlueZDouble bluez_{daemon_};
  std::shared_ptr<linuxos::PositionHub> hub_ = test::makeGeoClueHub(bus_, time_.mainQueue());
  std::shared_ptr<LocationServices> services_ = std::make_shared<linuxos::SystemLocationServices>(
      hub_, std::make_shared<linuxos::BeaconScanner>(bus_, time_.mainQueue(), log_,
                                                     linuxos::BeaconScanner::Options{}));
};
INSTANTIATE_TYPED_TEST_SUITE_P(System, LocationManagerContract, LocationRig);

struct NotificationRig : linuxos::UserNotificationTest {
  NotificationRig() { center_ = makeCenter({}, linuxos::PositionSource::automatic, true, bus_); }
  void settle() {
    // What is shown takes a few steps of the store, the main queue and the desktop, which answers
    // over the centre's own bus in the order of the questions.
    for (int step = 0; step < 6; ++step) {
      pendingOf(*center_);
      passBy(linuxos::kNotificationsName);
    }
  }
  void allow(bool isAllowed) {
    location_->setAuthorizationStatus(isAllowed ? 4 : 2);
    settle();
  }
  void go(double metresNorth, double accuracy = 5) {
    location_->deliver({simulation::northOfSite(metresNorth), accuracy});
    settle();
  }
  std::vector<std::string> shown() {
    std::vector<std::string> titles;
    for (const auto& each : desktop_.shown()) titles.push_back(each.title);
    return titles;
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Stored, UserNotificationCenterContract, NotificationRig);

}  // namespace
}  // namespace ovinta::platform::contract
