#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/beacons/BeaconTracker.h"
#include "platform/portable/Lifetime.h"
#include "platform/portable/MonitoredRegions.h"

namespace ovinta::platform::linuxos {

/// A manager of `SystemLocationServices`. What significant changes save is positions, not accuracy:
/// with less than the exact one GeoClue asks no receiver of satellites.
class SystemLocationManager : public LocationManager {
 public:
  SystemLocationManager(std::shared_ptr<PositionHub> hub, std::shared_ptr<BeaconScanner> scanner);
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
  void startRangingBeacons(const IdentifiedBeaconRegion& region) override {
    beacons_.startRanging(region);
  }
  void stopRangingBeacons(const IdentifiedBeaconRegion& region) override {
    beacons_.stopRanging(region);
  }
  std::vector<Region> rangedRegions() const override;

  /// This system wakes nobody for a region.
  void startMonitoring(const Region& region) override { monitored_.start(region); }
  void stopMonitoring(const Region& region) override { monitored_.stop(region); }
  std::vector<Region> monitoredRegions() const override { return monitored_.all(); }

 private:
  void noteStatus();
  void tellStatus();
  void report(const Location& location);

  const std::shared_ptr<PositionHub> hub_;
  LocationManagerDelegate* delegate_ = nullptr;
  /// The permission that the delegate was told last; none before the first time.
  std::optional<AuthorizationStatus> told_;
  double distanceFilter_ = 0;
  std::optional<Location> lastReported_;
  /// The two kinds of updates, each null while it does not run.
  std::unique_ptr<PositionStream> updates_;
  std::unique_ptr<PositionStream> significantChanges_;
  portable::MonitoredRegions monitored_;
  BeaconTracker beacons_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
