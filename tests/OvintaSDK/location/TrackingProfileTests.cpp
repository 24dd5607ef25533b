#include "OvintaSDK/location/TrackingProfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ovinta {
namespace {

using platform::ActivityType;
using platform::BatteryState;
using platform::LocationAccuracy;

struct Row {
  double distance;
  LocationAccuracy accuracy;
  ActivityType activity;
  double filterCharging;
  double filterOtherwise;
};

constexpr auto kNear = LocationAccuracy::bestForNavigation;
constexpr auto kFar = LocationAccuracy::best;

TEST(TrackingProfile, FollowsTheTableUpToItsBorders) {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto below = [](double border) { return std::nextafter(border, 0); };
  const Row rows[] = {
      {0, kNear, ActivityType::otherNavigation, 3, 3},
      {below(250), kNear, ActivityType::otherNavigation, 3, 3},
      {250, kNear, ActivityType::otherNavigation, 15, 30},
      {below(500), kNear, ActivityType::otherNavigation, 15, 30},
      {500, kFar, ActivityType::automotiveNavigation, 100, 200},
      {below(2000), kFar, ActivityType::automotiveNavigation, 100, 200},
      {2000, kFar, ActivityType::automotiveNavigation, 200, 400},
      {infinity, kFar, ActivityType::automotiveNavigation, 200, 400},
  };
  for (const Row& row : rows) {
    const auto expected = [&row](double filter) {
      return TrackingProfile{row.accuracy, row.activity, filter};
    };
    EXPECT_EQ(trackingProfile(row.distance, BatteryState::charging), expected(row.filterCharging))
        << row.distance;
    for (const auto battery :
         {BatteryState::unknown, BatteryState::unplugged, BatteryState::full}) {
      EXPECT_EQ(trackingProfile(row.distance, battery), expected(row.filterOtherwise))
          << row.distance << ", battery " << static_cast<int>(battery);
    }
  }
}

}  // namespace
}  // namespace ovinta
