#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/beacons/BeaconTracker.h"
#include "platform/portable/CircularRegionMonitor.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// A manager of `SystemLocationServices`. What significant changes save is positions, not accuracy:
/// with less than the exact one GeoClue asks no receiver of satellites.
class SystemLocationManager : public LocationManager {
 public:
  SystemLocationManager(std::shared_ptr<PositionHub> hub, std::shared_ptr<BeaconScanner> scanner,
                        std::shared_ptr<Geodesy> geodesy);
  SystemLocationManager(const SystemLocationManager&) = delete;
  SystemLocationManager& operator=(const SystemLocationManager&) = delete;

  void setDelegate(LocationManagerDelegate* delegate) override;

  /// No service of this system treats the background apart, nor knows activities, and positions
  /// are always as exact as the device can.
  void setAllowsBackgroundLocationUpdates(bool) override {}
  void setDesiredAccuracy(LocationAccuracy) override {}
  void setActivityType(ActivityType) override {}

  void setDistanceFilter(double metres) override;
  void startUpdatingLocation() override;
  void stopUpdatingLocation() override { updates_ = nullptr; }
  void startMonitoringSignificantLocationChanges() override;
  void stopMonitoringSignificantLocationChanges() override { significantChanges_ = nullptr; }
  void startRangingBeacons(const BeaconRegion& region) override { beacons_.startRanging(region); }
  void stopRangingBeacons(const BeaconRegion& region) override { beacons_.stopRanging(region); }
  std::vector<Region> rangedRegions() const override;
  void startMonitoring(const Region& region) override;
  void stopMonitoring(const Region& region) override;
  std::vector<Region> monitoredRegions() const override { return monitored_; }

 private:
  BeaconHandlers beaconHandlers();
  void noteStatus();
  void tellStatus();
  void report(const Location& location);
  void judgeCircles(const Location& fix);
  void tellCrossing(const Region& region, portable::RegionEvent event);

  const std::shared_ptr<PositionHub> hub_;
  const std::shared_ptr<Geodesy> geodesy_;
  LocationManagerDelegate* delegate_ = nullptr;
  /// The permission that the delegate was told last; none before the first time.
  std::optional<AuthorizationStatus> told_;
  double distanceFilter_ = 0;
  std::optional<Location> lastReported_;
  /// The two kinds of updates, each null while it does not run.
  std::unique_ptr<PositionStream> updates_;
  std::unique_ptr<PositionStream> significantChanges_;
  std::vector<Region> monitored_;
  portable::CircularRegionMonitor circles_;
  /// The positions by which circles are judged; null while there are none.
  std::unique_ptr<PositionStream> circleFixes_;
  BeaconTracker beacons_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
