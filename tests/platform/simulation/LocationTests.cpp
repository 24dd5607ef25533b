// What the simulation adds to the promises of every location manager.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulation/SimulatedLocation.h"
#include "platform/simulation/VirtualTime.h"
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
  const std::tuple<bool, AuthorizationStatus, bool> kCases[] = {
      {true, 3, true},  {true, 4, true},  {true, 0, false}, {true, 1, false},
      {true, 2, false}, {true, 5, false}, {false, 3, false}};
  manager->startUpdatingLocation();
  for (const double metres : {3, 7, 7}) manager->setDistanceFilter(metres);
  EXPECT_EQ(location.distanceFilterChangeCount(), 2U);
  manager->setDistanceFilter(0);
  int known = 0;
  location.onPosition([&](const Location&) { ++known; });
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

TEST_F(LocationTest, BeaconsComeOnTheSecondAndNothingElseIsScheduled) {
  const BeaconRegion region{.proximityUUID = {}, .major = 1, .minor = 2, .identifier = "one"};
  time.runUntilIdle();
  EXPECT_EQ(time.pendingTaskCount(), 0u);
  manager->startRangingBeacons(region);
  // Only the low 16 bits of the numbers count.
  location.setBeaconsInRange({{.proximityUUID = {}, .major = 65'536 + 1, .minor = 2},
                              {.proximityUUID = {}, .major = 2, .minor = 3},
                              {.proximityUUID = UUID{{1}}, .major = 1, .minor = 2}});
  time.advance(999ms);
  EXPECT_THAT(delegate.take(), ElementsAre("status 3"));
  time.advance(1ms);
  EXPECT_THAT(delegate.take(), ElementsAre("one: 2@0?"));
  manager->stopRangingBeacons(region);
  time.advance(1s);
  EXPECT_EQ(time.pendingTaskCount(), 0u);
}

}  // namespace
}  // namespace ovinta::platform::simulation
