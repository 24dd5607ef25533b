#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Region.h"

namespace ovinta::platform {

/// How precise positions should be, best first; a better one costs more power.
enum class LocationAccuracy { bestForNavigation, best };

/// What the user is doing, which tells the service how positions may be filtered.
enum class ActivityType { other = 1, automotiveNavigation = 2, fitness = 3, otherNavigation = 4 };

/// The application's permission to follow the user: one of the constants below. A platform may know
/// further numbers, which permit nothing.
using AuthorizationStatus = int;

/// Nobody has asked the user yet, or the user has not answered.
inline constexpr AuthorizationStatus kAuthorizationNotDetermined = 0;
/// Something stands above the user's answer, such as location that is off for all applications.
inline constexpr AuthorizationStatus kAuthorizationRestricted = 1;
/// The user has refused.
inline constexpr AuthorizationStatus kAuthorizationDenied = 2;
/// The application may follow the user at any time.
inline constexpr AuthorizationStatus kAuthorizedAlways = 3;
/// The application may follow the user while the user is aware of it.
inline constexpr AuthorizationStatus kAuthorizedWhenInUse = 4;

/// Whether the application may follow the user: always, or when in use.
constexpr bool isAuthorized(AuthorizationStatus status) {
  return status == kAuthorizedAlways || status == kAuthorizedWhenInUse;
}

/// A beacon as heard in one ranging interval. A plain value.
struct RangedBeacon {
  /// The UUID that the beacons of one owner share.
  UUID proximityUUID;
  /// A beacon sends only the low 16 bits of the major and of the minor number.
  std::int64_t major = 0;
  std::int64_t minor = 0;
  /// Received signal strength in dBm; 0 when unknown.
  std::int64_t rssi = 0;
  /// Estimated distance in metres, finite; negative when unknown.
  double accuracy = -1;
};

/// Receives what a location manager finds, always on the main thread, never inside a call of a
/// `LocationManager` method.
class LocationManagerDelegate {
 public:
  virtual ~LocationManagerDelegate() = default;

  /// New positions, oldest first; any number of times while updates run.
  virtual void didUpdateLocations(const std::vector<Location>& locations) = 0;

  /// Once soon after the delegate was set, and once at each change.
  virtual void didChangeAuthorizationStatus(AuthorizationStatus status) = 0;

  /// About once a second for each ranged region, with the beacons heard since, possibly none. Of a
  /// region that was stopped nothing more is told.
  virtual void didRangeBeacons(const std::vector<RangedBeacon>& beacons,
                               const IdentifiedBeaconRegion& region) = 0;
};

/// Follows the user's position and nearby beacons. Made on, used on and destroyed on the main
/// thread. Nothing is reported while the permission is missing; what was started resumes by itself
/// when it is granted. Starting what runs and stopping what does not run does nothing.
class LocationManager {
 public:
  virtual ~LocationManager() = default;

  /// Not owned; must outlive the manager. Null for none.
  virtual void setDelegate(LocationManagerDelegate* delegate) = 0;

  /// Whether updates go on while the application is in the background, on a platform that would
  /// otherwise stop them.
  virtual void setAllowsBackgroundLocationUpdates(bool allows) = 0;

  /// Metres that the user must move before the next position is reported. Settings changed while
  /// updates run take effect at once, here and in the next two.
  virtual void setDistanceFilter(double metres) = 0;
  /// How precise positions should be: a wish, which the platform need not fulfil.
  virtual void setDesiredAccuracy(LocationAccuracy accuracy) = 0;
  /// What the platform may take into account when it filters positions.
  virtual void setActivityType(ActivityType type) = 0;

  /// Has the delegate told of positions, the first one as soon as it is known.
  virtual void startUpdatingLocation() = 0;
  virtual void stopUpdatingLocation() = 0;

  /// Has the delegate told of moves of some 500 m and more, at little cost in power.
  virtual void startMonitoringSignificantLocationChanges() = 0;
  virtual void stopMonitoringSignificantLocationChanges() = 0;

  /// Has the delegate told every second which beacons of the region are heard. Ranging is keyed by
  /// the region's whole value.
  virtual void startRangingBeacons(const IdentifiedBeaconRegion& region) = 0;
  virtual void stopRangingBeacons(const IdentifiedBeaconRegion& region) = 0;
  /// The regions that are ranged now.
  virtual std::vector<Region> rangedRegions() const = 0;

  /// Lets the platform know of a region that matters, for which one that suspends or ends
  /// applications would wake this one; the delegate is told nothing of it. Monitoring is keyed by
  /// the identifier: a region replaces an earlier one of the same.
  virtual void startMonitoring(const Region& region) = 0;
  virtual void stopMonitoring(const Region& region) = 0;
  /// The regions that are monitored now.
  virtual std::vector<Region> monitoredRegions() const = 0;
};

/// The location services of the device.
class LocationServices {
 public:
  virtual ~LocationServices() = default;

  /// Whether the user has location services switched on at all. May be called from any thread.
  virtual bool locationServicesEnabled() const = 0;

  /// The application's current permission. May be called from any thread.
  virtual AuthorizationStatus authorizationStatus() const = 0;

  /// A new manager, never null, without a delegate. Main thread only.
  virtual std::unique_ptr<LocationManager> makeLocationManager() = 0;
};

}  // namespace ovinta::platform
