#pragma once

#include "platform/Device.h"
#include "platform/LocationManager.h"

namespace ovinta {

/// How closely the user is followed at some distance from the site.
struct TrackingProfile {
  platform::LocationAccuracy desiredAccuracy;
  platform::ActivityType activityType;
  /// How far the user must move, in metres, before the next position is reported.
  double distanceFilter;

  friend bool operator==(const TrackingProfile&, const TrackingProfile&) = default;
};

/// The profile for a distance in metres: the nearer the site, the closer; further out a charging
/// device reports twice as often as one on battery.
TrackingProfile trackingProfile(double distance, platform::BatteryState battery);

}  // namespace ovinta
