#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/RecordingDelegate.h"

namespace ovinta::platform::contract {

using testing::ElementsAre;
using testing::IsEmpty;

/// Of the beacons in the regions of the tests, with the major number 1.
inline constexpr UUID kBeaconUUID{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
/// Of a beacon that is always near and in no region.
inline constexpr UUID kForeignUUID{{42}};

inline IdentifiedBeaconRegion region(const char* name, std::optional<std::uint16_t> minor = {}) {
  return {kBeaconUUID, 1, minor, name};
}

/// What all location services promise. A rig is a fixture, run on the main thread, with
/// `services_`, a pointer, whose permission nobody has asked for at first, and with the world
/// around them: `allow(isAllowed)`, after which the permission is 4 or 1 and location on or off, as
/// a whole; `go(metresNorth, accuracy = 5)` of the site; `passSecond(minors)`, in which these
/// beacons and the foreign one are heard with -60 dBm; `advance(interval)`; `settle()`, which has
/// all arrive that was asked and told so far; `isIdle()`: whether nothing is left to run later.
template <class Rig>
class LocationManagerContract : public Rig {
 protected:
  /// The permission is there, and the delegate knows it.
  void begin() {
    manager_->setDelegate(&delegate_);
    this->allow(true);
    delegate_.take();
  }

  std::vector<std::string> travel(std::initializer_list<double> metres) {
    for (const double distance : metres) this->go(distance);
    return delegate_.take();
  }

  std::vector<std::string> pass(int seconds, const std::vector<std::uint16_t>& heardInEach = {}) {
    for (int second = 0; second < seconds; ++second) this->passSecond(heardInEach);
    return delegate_.take();
  }

  test::RecordingDelegate delegate_;
  std::unique_ptr<LocationManager> manager_ = this->services_->makeLocationManager();
};
TYPED_TEST_SUITE_P(LocationManagerContract);

TYPED_TEST_P(LocationManagerContract, EachDelegateHearsTheStatusOnceAndEachChange) {
  test::RecordingDelegate earlier, orphan;
  this->manager_->setDelegate(&earlier);
  this->manager_->setDelegate(&this->delegate_);
  this->services_->makeLocationManager()->setDelegate(&orphan);
  EXPECT_THAT(this->delegate_.take(), IsEmpty()) << "never inside the call";
  this->settle();
  this->manager_->startUpdatingLocation();
  for (const bool isAllowed : {true, true, false, true}) {
    this->allow(isAllowed);
    EXPECT_EQ(this->services_->locationServicesEnabled(), isAllowed);
  }
  EXPECT_THAT(this->delegate_.take(), ElementsAre("status 0", "status 4", "status 1", "status 4"));
  this->manager_->setDelegate(&this->delegate_);
  this->settle();
  EXPECT_THAT(this->delegate_.take(), ElementsAre("status 4"));
  EXPECT_THAT(earlier.take(), IsEmpty());
  EXPECT_THAT(orphan.take(), IsEmpty());
}

TYPED_TEST_P(LocationManagerContract, TellsNothingInsideACall) {
  this->begin();
  this->manager_->startUpdatingLocation();
  this->manager_->startRangingBeacons(region("all"));
  this->travel({1});
  this->pass(2, {1});
  const CircularRegion circle{.center = simulation::kSite, .radius = 100, .identifier = "circle"};
  this->manager_->stopUpdatingLocation();
  this->manager_->startUpdatingLocation();
  this->manager_->startMonitoringSignificantLocationChanges();
  this->manager_->setDistanceFilter(0);
  for (const Region& monitored : {Region(circle), Region(region("all"))}) {
    this->manager_->startMonitoring(monitored);
  }
  this->manager_->startRangingBeacons(region("one", 1));
  this->manager_->stopRangingBeacons(region("all"));
  EXPECT_THAT(this->delegate_.take(), IsEmpty());
}

TYPED_TEST_P(LocationManagerContract, PositionsComeFromStartToStopWhileThePermissionLasts) {
  this->begin();
  EXPECT_THAT(this->travel({1}), IsEmpty());
  for (int i = 0; i < 2; ++i) this->manager_->startUpdatingLocation();
  EXPECT_THAT(this->travel({2, 3}), ElementsAre("at 2", "at 3"));
  this->allow(false);
  EXPECT_THAT(this->travel({4}), ElementsAre("status 1"));
  this->allow(true);
  EXPECT_THAT(this->travel({5}), ElementsAre("status 4", "at 5"));
  this->manager_->stopUpdatingLocation();
  EXPECT_THAT(this->travel({6}), IsEmpty());
  this->manager_->startUpdatingLocation();
  this->delegate_.onTold = [this] { this->manager_.reset(); };
  EXPECT_THAT(this->travel({7, 8}), ElementsAre("at 7"));
}

TYPED_TEST_P(LocationManagerContract, PositionsPassTheDistanceFilter) {
  this->begin();
  this->manager_->setDistanceFilter(100);
  this->manager_->startUpdatingLocation();
  EXPECT_THAT(this->travel({1000, 950, 901, 899, 850, 800}), ElementsAre("at 1000", "at 899"));
  // A changed filter takes effect at once, and a new start reports the next one in any case.
  this->manager_->setDistanceFilter(3);
  this->manager_->startUpdatingLocation();
  EXPECT_THAT(this->travel({801, 799, 797}), ElementsAre("at 801", "at 797"));
  this->manager_->stopUpdatingLocation();
  this->settle();
  this->manager_->startUpdatingLocation();
  EXPECT_THAT(this->travel({796, 795}), ElementsAre("at 796"));
}

TYPED_TEST_P(LocationManagerContract, SignificantChangesAloneComeEvery500Metres) {
  this->begin();
  this->manager_->startMonitoringSignificantLocationChanges();
  EXPECT_THAT(this->travel({2000, 1600, 1499, 1200, 990}),
              ElementsAre("at 2000", "at 1499", "at 990"));
  this->manager_->startUpdatingLocation();
  EXPECT_THAT(this->travel({100, 50}), ElementsAre("at 100", "at 50")) << "each once";
  this->manager_->stopUpdatingLocation();
  EXPECT_THAT(this->travel({70, 1000}), ElementsAre("at 1000"));
  this->manager_->stopMonitoringSignificantLocationChanges();
  EXPECT_THAT(this->travel({2000}), IsEmpty());
}

TYPED_TEST_P(LocationManagerContract, RangedRegionsReportOnceASecondAndAreKeyedByTheirValue) {
  this->begin();
  for (const auto& ranged : {region("all"), region("one", 1), region("one", 2), region("one", 1)}) {
    this->manager_->startRangingBeacons(ranged);
  }
  this->manager_->stopRangingBeacons(region("one", 2));
  EXPECT_THAT(this->manager_->rangedRegions(),
              ElementsAre(Region(region("all")), Region(region("one", 1))));
  EXPECT_THAT(this->pass(1, {1, 2}), ElementsAre("all: 1@-60 2@-60", "one: 1@-60"));
  EXPECT_THAT(this->pass(2), ElementsAre("all:", "one:", "all:", "one:"));

  // Ranging that stops and starts again keeps its beat.
  this->manager_->stopRangingBeacons(region("all"));
  for (int i = 0; i < 4; ++i) {
    this->advance(std::chrono::milliseconds(500));
    this->manager_->stopRangingBeacons(region("one", 1));
    this->manager_->startRangingBeacons(region("one", 1));
  }
  EXPECT_THAT(this->delegate_.take(), ElementsAre("one:", "one:"));
  this->manager_->startUpdatingLocation();
  this->settle();
  for (const bool isAllowed : {false, true}) {
    this->allow(isAllowed);
    this->delegate_.take();
    EXPECT_EQ(this->pass(2).size(), isAllowed ? 2U : 0U);
  }
  this->manager_->startRangingBeacons(region("all"));
  this->delegate_.onTold = [this] { this->manager_->stopRangingBeacons(region("all")); };
  EXPECT_THAT(this->pass(1), ElementsAre("one:")) << "of what was stopped nothing is told";
  this->manager_->startRangingBeacons(region("all"));
  this->delegate_.onTold = [this] { this->manager_.reset(); };
  EXPECT_EQ(this->pass(3).size(), 1U);
  this->advance(std::chrono::minutes(1));
  EXPECT_TRUE(this->isIdle());
}

TYPED_TEST_P(LocationManagerContract, MonitoredRegionsAreKeyedByTheirIdentifier) {
  const CircularRegion circle{.center = simulation::kSite, .radius = 100, .identifier = "one"};
  for (const Region& monitored :
       {Region(circle), Region(region("all")), Region(region("one", 1)), Region(region("all"))}) {
    this->manager_->startMonitoring(monitored);
  }
  EXPECT_THAT(this->manager_->monitoredRegions(),
              ElementsAre(Region(region("all")), Region(region("one", 1))));
  this->manager_->stopMonitoring(circle);
  EXPECT_THAT(this->manager_->monitoredRegions(), ElementsAre(Region(region("all"))));
  EXPECT_THAT(this->manager_->rangedRegions(), IsEmpty());
}

REGISTER_TYPED_TEST_SUITE_P(LocationManagerContract, EachDelegateHearsTheStatusOnceAndEachChange,
                            TellsNothingInsideACall,
                            PositionsComeFromStartToStopWhileThePermissionLasts,
                            PositionsPassTheDistanceFilter,
                            SignificantChangesAloneComeEvery500Metres,
                            RangedRegionsReportOnceASecondAndAreKeyedByTheirValue,
                            MonitoredRegionsAreKeyedByTheirIdentifier);

}  // namespace ovinta::platform::contract
