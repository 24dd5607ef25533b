// What the simulation adds to the promises of every location manager.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/time/VirtualTime.h"
#include "tests/support/RecordingDelegate.h"

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

class LocationTest : public ::testing::Test {
 protected:
  void SetUp() override { manager->setDelegate(&delegate); }

  VirtualTime time{Date{}};
  SimulatedLocation location{time.mainQueue(), std::make_shared<Sphere>()};
  test::RecordingDelegate delegate;
  std::unique_ptr<LocationManager> manager = location.makeLocationManager();
};

TEST_F(LocationTest, PositionsComeOnlyWithServiceAndPermission) {
  manager->startUpdatingLocation();
  for (const double metres : {3, 7, 7, 0}) manager->setDistanceFilter(metres);
  EXPECT_EQ(location.distanceFilterChangeCount(), 3U);
  int known = 0;
  location.onPosition([&](const Location&) { ++known; });
  const std::tuple<bool, AuthorizationStatus, bool> kCases[] = {
      {true, 3, true}, {true, 2, false}, {true, 5, false}, {false, 3, false}};
  for (const auto& [enabled, status, reported] : kCases) {
    SCOPED_TRACE(status);
    known = 0;
    location.setLocationServicesEnabled(enabled);
    location.setAuthorizationStatus(status);
    time.runUntilIdle();
    delegate.take();
    location.deliver({.coordinate = kSite});
    time.runUntilIdle();
    EXPECT_EQ(delegate.take() == std::vector<std::string>{"at 0"}, reported);
    EXPECT_EQ(known, reported);
  }
}

TEST_F(LocationTest, OnlyTheLow16BitsOfABeaconsNumbersCount) {
  manager->startRangingBeacons({.proximityUUID = {}, .major = 1, .minor = 2, .identifier = "one"});
  location.setBeaconsInRange({{.proximityUUID = {}, .major = 65'536 + 1, .minor = 2},
                              {.proximityUUID = {}, .major = 2, .minor = 3},
                              {.proximityUUID = UUID{{1}}, .major = 1, .minor = 2}});
  time.advance(1s);
  EXPECT_THAT(delegate.take(), ElementsAre("status 3", "one: 2@0?"));
}

}  // namespace
}  // namespace ovinta::platform::simulation
