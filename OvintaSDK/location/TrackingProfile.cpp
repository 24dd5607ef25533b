#include "OvintaSDK/location/TrackingProfile.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ovinta {
namespace {

using platform::ActivityType;
using platform::LocationAccuracy;

struct Row {
  /// The row holds for distances, in metres, below this one.
  double upTo;
  LocationAccuracy desiredAccuracy;
  ActivityType activityType;
  double filterCharging;
  double filterOtherwise;
};

constexpr std::array<Row, 4> kRows{{
    {250, LocationAccuracy::bestForNavigation, ActivityType::otherNavigation, 3, 3},
    {500, LocationAccuracy::bestForNavigation, ActivityType::otherNavigation, 15, 30},
    {2000, LocationAccuracy::best, ActivityType::automotiveNavigation, 100, 200},
    {std::numeric_limits<double>::infinity(), LocationAccuracy::best,
     ActivityType::automotiveNavigation, 200, 400},
}};

}  // namespace

TrackingProfile trackingProfile(double distance, platform::BatteryState battery) {
  const auto found =
      std::ranges::find_if(kRows, [distance](const Row& row) { return distance < row.upTo; });
  const Row& row = found == kRows.end() ? kRows.back() : *found;
  const bool charging = battery == platform::BatteryState::charging;
  return {.desiredAccuracy = row.desiredAccuracy,
          .activityType = row.activityType,
          .distanceFilter = charging ? row.filterCharging : row.filterOtherwise};
}

}  // namespace ovinta
