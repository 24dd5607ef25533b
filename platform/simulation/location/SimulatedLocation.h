#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "../../LocationManager.h"
#include "../../MainQueue.h"

namespace ovinta::platform::simulation {

class SimulatedLocationState;

/// Location services whose positions, beacons and permission the test decides. Everything reaches
/// the managers' delegates through the main queue. Except for the two queries that
/// `LocationServices` opens to any thread, it is used on the main thread.
class SimulatedLocation : public LocationServices {
 public:
  /// Permission at first: always; services enabled. `geodesy` measures the moves.
  SimulatedLocation(std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Geodesy> geodesy);
  ~SimulatedLocation() override;

  bool locationServicesEnabled() const override;
  AuthorizationStatus authorizationStatus() const override;
  std::unique_ptr<LocationManager> makeLocationManager() override;

  /// The permission from now on. Each delegate hears of it once; a status equal to the present one
  /// changes nothing.
  void setAuthorizationStatus(AuthorizationStatus status);

  /// Whether the user has location services switched on; nobody is told of a change.
  void setLocationServicesEnabled(bool enabled);

  /// The device is at the location. A manager reports it if, when the main queue comes to it,
  /// location services are enabled and the permission is 3 or 4, updates run, and it is the first
  /// since they were started or lies at least the distance filter away from the last reported one.
  /// With significant-change monitoring alone, 500 m stand for the filter. Monitored circles are
  /// judged by every location under the same conditions of service and permission.
  void deliver(Location location);

  /// The beacons that the device hears from now on. A second after a manager has begun to range or
  /// to monitor beacons, and every second as long as it does, each of its ranged regions reports
  /// those that match it, possibly none, and monitored ones what has changed, under the same
  /// conditions of service and permission. Otherwise nothing is scheduled.
  void setBeaconsInRange(std::vector<RangedBeacon> beacons);

  /// Has `observer` called with every location that the device has while services and permission
  /// allow it to be known, whether or not a manager reports it, before the managers.
  void onPosition(std::function<void(const Location&)> observer);

  /// Has `observer` called each time a manager's accuracy, filter, activity or background setting
  /// becomes another one, or its updates start or stop; inside the manager's method.
  void onSettingsChanged(std::function<void()> observer);

  /// What the manager made last, of those alive, was told; without one, what a new one begins with.
  /// The accuracy is absent until one was set; the filter is in metres.
  std::optional<LocationAccuracy> desiredAccuracy() const;
  double distanceFilter() const;
  ActivityType activityType() const;
  bool allowsBackgroundUpdates() const;
  bool isUpdating() const;
  bool isMonitoringSignificantChanges() const;
  std::vector<Region> rangedRegions() const;
  std::vector<Region> monitoredRegions() const;

  /// How often any manager's distance filter became another one than before.
  std::size_t distanceFilterChangeCount() const;

 private:
  std::shared_ptr<SimulatedLocationState> state_;
};

}  // namespace ovinta::platform::simulation
