#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/beacons/BlueZObjects.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/BusFixture.h"
#include "tests/support/GeoClueDouble.h"

namespace ovinta::platform {

/// Of a beacon that is always near and in no region.
inline constexpr UUID kForeignUUID{{42}};

/// A device of the simulation. At first nobody has asked for the permission.
class SimulatedLocationRig : public testing::Test {
 protected:
  SimulatedLocationRig() { services_.setAuthorizationStatus(kAuthorizationNotDetermined); }

  /// Has all that was asked and told so far arrive.
  void settle() { time_.runUntilIdle(); }
  void allow(bool isAllowed) {
    services_.setLocationServicesEnabled(isAllowed);
    services_.setAuthorizationStatus(isAllowed ? 4 : 1);
    settle();
  }
  void go(double metresNorth, double accuracy = 5) {
    services_.deliver({simulation::northOfSite(metresNorth), accuracy});
    settle();
  }
  /// Lets a second pass in which these beacons, told apart by their minor number, are heard.
  void passSecond(const std::vector<std::uint16_t>& minors) {
    std::vector<RangedBeacon> heard{{kForeignUUID, 1, 1, -60, 1}};
    for (const auto minor : minors) heard.push_back({test::kBeaconUUID, 1, minor, -60, 1});
    services_.setBeaconsInRange(heard);
    time_.advance(std::chrono::seconds(1));
  }

  simulation::VirtualTime time_{Date{}};
  simulation::SimulatedLocation services_{time_.mainQueue(),
                                          std::make_shared<simulation::Sphere>()};
};

/// The same on this system, with GeoClue and BlueZ played by doubles.
class LinuxLocationRig : public test::BusTest {
 protected:
  LinuxLocationRig() { bluez_.addAdapter("hci0"); }

  void settle() {
    // What the library does in turn with the services takes a few steps.
    for (int step = 0; step < 10; ++step) {
      for (const char* name : {linuxos::kGeoClueName, linuxos::kBlueZName}) passBy(name);
    }
  }
  void allow(bool isAllowed) {
    if (services_.authorizationStatus() == kAuthorizationNotDetermined) hub_->askPermission();
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
                       test::beaconFrame({test::kBeaconUUID, 1, minor, -59}), -60);
    }
    settle();
    time_.advance(std::chrono::seconds(1));
  }

  test::GeoClueDouble geoclue_{daemon_};
  test::BlueZDouble bluez_{daemon_};
  std::shared_ptr<linuxos::PositionHub> hub_ = test::makeGeoClueHub(bus_, time_.mainQueue());
  linuxos::SystemLocationServices services_{
      hub_,
      std::make_shared<linuxos::BeaconScanner>(bus_, time_.mainQueue(), log_,
                                               linuxos::BeaconScanner::Settings{}),
      std::make_shared<simulation::Sphere>()};
};

}  // namespace ovinta::platform
