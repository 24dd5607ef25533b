#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/simulation/SimulatedLocation.h"
#include "platform/simulation/VirtualTime.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr UUID kUUID{{1, 2, 3}};

BeaconRegion region(const std::string& name, std::optional<std::uint16_t> major = {},
                    std::optional<std::uint16_t> minor = {}) {
  return {.proximityUUID = kUUID, .major = major, .minor = minor, .identifier = name};
}

/// Notes what it is told: metres north of the site, "region: minor..." and crossed regions.
class Delegate : public LocationManagerDelegate {
 public:
  void didUpdateLocations(const std::vector<Location>& locations) override {
    for (const auto& location : locations) {
      metres.push_back(std::lround(Sphere().distance(kSite, location.coordinate)));
    }
  }
  void didChangeAuthorizationStatus(AuthorizationStatus) override {}
  void didRangeBeacons(const std::vector<RangedBeacon>& beacons,
                       const BeaconRegion& region) override {
    std::string& heard = notes.emplace_back(region.identifier + ":");
    for (const auto& beacon : beacons) heard += " " + std::to_string(beacon.minor);
    if (onRanged) onRanged();
  }
  void didEnterRegion(const BeaconRegion& region) override {
    notes.push_back("in " + region.identifier);
  }
  void didExitRegion(const BeaconRegion& region) override {
    notes.push_back("out " + region.identifier);
  }

  std::vector<long> metres;
  std::vector<std::string> notes;
  std::function<void()> onRanged;
};

class LocationTest : public ::testing::Test {
 protected:
  void deliver(std::initializer_list<double> metres) {
    for (const double distance : metres) location.deliver({.coordinate = northOfSite(distance)});
    time.runUntilIdle();
  }

  void SetUp() override { manager->setDelegate(&delegate); }

  VirtualTime time{Date{}};
  SimulatedLocation location{time.mainQueue(), std::make_shared<Sphere>()};
  Delegate delegate;
  std::unique_ptr<LocationManager> manager = location.makeLocationManager();
};

TEST_F(LocationTest, PositionsPassTheDistanceFilter) {
  manager->setDistanceFilter(100);
  manager->startUpdatingLocation();
  deliver({1000, 950, 901, 899, 850, 800});
  EXPECT_THAT(delegate.metres, ElementsAre(1000, 899));
  // A changed filter takes effect at once, and starting again reports the next one in any case.
  manager->setDistanceFilter(3);
  deliver({801, 799, 797});
  manager->startUpdatingLocation();
  deliver({798});
  manager->stopUpdatingLocation();
  deliver({500});
  manager->startUpdatingLocation();
  deliver({499, 498});
  EXPECT_THAT(delegate.metres, ElementsAre(1000, 899, 801, 797, 499));
  EXPECT_EQ(location.distanceFilterChangeCount(), 2u);
}

TEST_F(LocationTest, PositionsComeOnlyWithServiceAndPermission) {
  const std::tuple<bool, AuthorizationStatus, bool> kCases[] = {
      {true, 3, true},  {true, 4, true},  {true, 0, false}, {true, 1, false},
      {true, 2, false}, {true, 5, false}, {false, 3, false}};
  manager->startUpdatingLocation();
  int known = 0;
  location.onPosition([&](const Location&) { ++known; });
  for (const auto& [enabled, status, reported] : kCases) {
    SCOPED_TRACE(status);
    delegate.metres.clear();
    known = 0;
    location.setLocationServicesEnabled(enabled);
    location.setAuthorizationStatus(status);
    deliver({10});
    EXPECT_EQ(delegate.metres.size(), reported);
    EXPECT_EQ(known, reported);
  }
}

TEST_F(LocationTest, SignificantChangesAloneComeEvery500Metres) {
  deliver({2000});
  manager->startMonitoringSignificantLocationChanges();
  deliver({2000, 1600, 1499, 1200, 990});
  EXPECT_THAT(delegate.metres, ElementsAre(2000, 1499, 990));
}

TEST_F(LocationTest, RangedRegionsReportOnceASecond) {
  const BeaconRegion all = region("all");
  const BeaconRegion one = region("one", 1, 2);
  time.runUntilIdle();
  EXPECT_EQ(time.pendingTaskCount(), 0u);

  manager->startRangingBeacons(all);
  manager->startRangingBeacons(one);
  manager->startRangingBeacons(one);
  // Only the low 16 bits of the numbers count.
  location.setBeaconsInRange({{.proximityUUID = kUUID, .major = 65'536 + 1, .minor = 2},
                              {.proximityUUID = kUUID, .major = 2, .minor = 3},
                              {.proximityUUID = {}, .major = 1, .minor = 2}});
  time.advance(999ms);
  EXPECT_THAT(delegate.notes, IsEmpty());
  time.advance(1ms);
  EXPECT_THAT(delegate.notes, ElementsAre("all: 2 3", "one: 2"));

  // Ranging that stops and starts again keeps its beat; without permission nothing is reported.
  location.setBeaconsInRange({});
  delegate.notes.clear();
  for (int i = 0; i < 4; ++i) {
    time.advance(500ms);
    manager->stopRangingBeacons(all);
    manager->stopRangingBeacons(one);
    manager->startRangingBeacons(one);
  }
  location.setAuthorizationStatus(2);
  time.advance(2s);
  location.setAuthorizationStatus(3);
  EXPECT_THAT(delegate.notes, ElementsAre("one:", "one:"));

  manager->stopRangingBeacons(one);
  time.advance(1s);
  EXPECT_EQ(time.pendingTaskCount(), 0u);
  EXPECT_EQ(delegate.notes.size(), 2u);
}

TEST_F(LocationTest, MonitoredBeaconsAreEnteredWhenHeardAndLeftAfterHalfAMinute) {
  manager->startMonitoring(region("a"));
  location.setBeaconsInRange({{.proximityUUID = kUUID, .major = 1, .minor = 2}});
  time.advance(60s);
  location.setBeaconsInRange({});
  time.advance(29s);
  EXPECT_THAT(delegate.notes, ElementsAre("in a"));
  time.advance(1s);
  EXPECT_THAT(delegate.notes, ElementsAre("in a", "out a"));
}

TEST_F(LocationTest, ADelegateMayEndTheManagerWhileItReports) {
  manager->startRangingBeacons(region("a", 1));
  manager->startRangingBeacons(region("b", 2));
  delegate.onRanged = [this] { manager.reset(); };
  time.advance(5s);
  EXPECT_EQ(delegate.notes.size(), 1u);
  EXPECT_EQ(time.pendingTaskCount(), 0u);
}

}  // namespace
}  // namespace ovinta::platform::simulation
