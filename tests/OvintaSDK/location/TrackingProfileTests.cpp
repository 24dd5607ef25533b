#include "OvintaSDK/location/TrackingProfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace ovinta {
namespace {

using platform::ActivityType;
using platform::BatteryState;
using platform::LocationAccuracy;

TEST(TrackingProfile, FollowsTheTableUpToItsBorders) {
  constexpr auto kNear = LocationAccuracy::bestForNavigation;
  constexpr auto kFar = LocationAccuracy::best;
  const auto below = [](double border) { return std::nextafter(border, 0); };
  // Per distance: the filter while the battery is charged, and otherwise.
  const std::tuple<double, LocationAccuracy, ActivityType, double, double> rows[] = {
      {below(250), kNear, ActivityType::otherNavigation, 3, 3},
      {250, kNear, ActivityType::otherNavigation, 15, 30},
      {below(500), kNear, ActivityType::otherNavigation, 15, 30},
      {500, kFar, ActivityType::automotiveNavigation, 100, 200},
      {below(2000), kFar, ActivityType::automotiveNavigation, 100, 200},
      {2000, kFar, ActivityType::automotiveNavigation, 200, 400}};
  for (const auto& [distance, accuracy, activity, charging, otherwise] : rows) {
    for (const auto battery : {BatteryState::charging, BatteryState::unknown,
                               BatteryState::unplugged, BatteryState::full}) {
      const double filter = battery == BatteryState::charging ? charging : otherwise;
      EXPECT_EQ(trackingProfile(distance, battery), (TrackingProfile{accuracy, activity, filter}))
          << distance << ", battery " << static_cast<int>(battery);
    }
  }
}

}  // namespace
}  // namespace ovinta
