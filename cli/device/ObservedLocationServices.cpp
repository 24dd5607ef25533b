#include "cli/device/ObservedLocationServices.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace ovinta::cli {

using platform::IdentifiedBeaconRegion;
using platform::LocationManagerDelegate;
using platform::Region;

std::string accuracyText(const ObservedLocation& location) {
  if (!location.isUpdating) return "";
  const bool isBest = location.desiredAccuracy == platform::LocationAccuracy::best;
  return std::string(isBest ? "best" : "best for navigation") + ", " +
         std::to_string(std::lround(location.distanceFilter)) + " m";
}

std::string placeText(const platform::Location& location) {
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%.5f, %.5f within %.0f m", location.coordinate.latitude,
                location.coordinate.longitude, location.horizontalAccuracy);
  return text.data();
}

/// Stands between the library and a manager, in both directions.
class ObservedLocationServices::Manager : public platform::LocationManager,
                                          public LocationManagerDelegate {
 public:
  Manager(std::unique_ptr<LocationManager> inner, std::shared_ptr<Record> record)
      : inner_(std::move(inner)), record_(std::move(record)) {}

  void setDelegate(LocationManagerDelegate* delegate) override {
    delegate_ = delegate;
    inner_->setDelegate(delegate ? this : nullptr);
  }
  void setAllowsBackgroundLocationUpdates(bool allows) override {
    inner_->setAllowsBackgroundLocationUpdates(allows);
  }
  void setActivityType(platform::ActivityType type) override { inner_->setActivityType(type); }

  void setDistanceFilter(double metres) override {
    inner_->setDistanceFilter(metres);
    if (observed().distanceFilter != metres) ++observed().distanceFilterChanges;
    note(&ObservedLocation::distanceFilter, metres);
  }
  void setDesiredAccuracy(platform::LocationAccuracy accuracy) override {
    inner_->setDesiredAccuracy(accuracy);
    note(&ObservedLocation::desiredAccuracy, std::optional(accuracy));
  }
  void startUpdatingLocation() override {
    inner_->startUpdatingLocation();
    note(&ObservedLocation::isUpdating, true);
  }
  void stopUpdatingLocation() override {
    inner_->stopUpdatingLocation();
    note(&ObservedLocation::isUpdating, false);
  }
  void startMonitoringSignificantLocationChanges() override {
    inner_->startMonitoringSignificantLocationChanges();
    note(&ObservedLocation::isMonitoringSignificantChanges, true);
  }
  void stopMonitoringSignificantLocationChanges() override {
    inner_->stopMonitoringSignificantLocationChanges();
    note(&ObservedLocation::isMonitoringSignificantChanges, false);
  }
  void startRangingBeacons(const IdentifiedBeaconRegion& region) override {
    inner_->startRangingBeacons(region);
    note(&ObservedLocation::rangedRegions, inner_->rangedRegions());
  }
  void stopRangingBeacons(const IdentifiedBeaconRegion& region) override {
    inner_->stopRangingBeacons(region);
    note(&ObservedLocation::rangedRegions, inner_->rangedRegions());
  }
  void startMonitoring(const Region& region) override {
    inner_->startMonitoring(region);
    record_->tell();
  }
  void stopMonitoring(const Region& region) override {
    inner_->stopMonitoring(region);
    record_->tell();
  }
  std::vector<Region> rangedRegions() const override { return inner_->rangedRegions(); }
  std::vector<Region> monitoredRegions() const override { return inner_->monitoredRegions(); }

  void didUpdateLocations(const std::vector<platform::Location>& locations) override {
    if (!locations.empty()) note(&ObservedLocation::location, std::optional(locations.back()));
    if (delegate_) delegate_->didUpdateLocations(locations);
  }
  void didChangeAuthorizationStatus(platform::AuthorizationStatus status) override {
    record_->tell();
    if (delegate_) delegate_->didChangeAuthorizationStatus(status);
  }
  void didRangeBeacons(const std::vector<platform::RangedBeacon>& beacons,
                       const IdentifiedBeaconRegion& region) override {
    record_->beacons.update(beacons);
    record_->tell();
    if (delegate_) delegate_->didRangeBeacons(beacons, region);
  }

 private:
  ObservedLocation& observed() const { return record_->observed; }

  template <class T>
  void note(T ObservedLocation::*field, T value) {
    observed().*field = std::move(value);
    record_->tell();
  }

  const std::unique_ptr<LocationManager> inner_;
  const std::shared_ptr<Record> record_;
  LocationManagerDelegate* delegate_ = nullptr;
};

const ObservedLocation& ObservedLocationServices::observed() const {
  // Nothing is ranged without the permission, and what was heard grows old all the same.
  record_->beacons.prune();
  record_->observed.beacons = record_->beacons.list();
  return record_->observed;
}

std::unique_ptr<platform::LocationManager> ObservedLocationServices::makeLocationManager() {
  return std::make_unique<Manager>(inner_->makeLocationManager(), record_);
}

}  // namespace ovinta::cli
