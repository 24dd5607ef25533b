#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/portable/Lifetime.h"
#include "platform/portable/MonitoredRegions.h"
#include "platform/simulation/location/SimulatedLocationState.h"

namespace ovinta::platform::simulation {

/// A manager of a `SimulatedLocation`, where the rules of reporting are stated.
class SimulatedLocationManager : public LocationManager {
 public:
  struct Settings {
    std::optional<LocationAccuracy> desiredAccuracy;
    double distanceFilter = 0;
    ActivityType activityType = ActivityType::other;
    bool allowsBackgroundUpdates = false;
    bool isUpdating = false;
    bool isMonitoringSignificantChanges = false;

    friend bool operator==(const Settings&, const Settings&) = default;
  };

  explicit SimulatedLocationManager(std::shared_ptr<SimulatedLocationState> state);
  SimulatedLocationManager(const SimulatedLocationManager&) = delete;
  SimulatedLocationManager& operator=(const SimulatedLocationManager&) = delete;
  ~SimulatedLocationManager() override;

  void setDelegate(LocationManagerDelegate* delegate) override;
  void setAllowsBackgroundLocationUpdates(bool allows) override;
  void setDistanceFilter(double metres) override;
  void setDesiredAccuracy(LocationAccuracy accuracy) override;
  void setActivityType(ActivityType type) override;
  void startUpdatingLocation() override;
  void stopUpdatingLocation() override;
  void startMonitoringSignificantLocationChanges() override;
  void stopMonitoringSignificantLocationChanges() override;
  void startRangingBeacons(const IdentifiedBeaconRegion& region) override;
  void stopRangingBeacons(const IdentifiedBeaconRegion& region) override;
  std::vector<Region> rangedRegions() const override;
  void startMonitoring(const Region& region) override { monitored_.start(region); }
  void stopMonitoring(const Region& region) override { monitored_.stop(region); }
  std::vector<Region> monitoredRegions() const override { return monitored_.all(); }

  const Settings& settings() const { return settings_; }

  /// Has the main queue tell the delegate of the status, unless the manager is gone by then.
  void announceStatus(AuthorizationStatus status);
  /// Hands the location to the delegate if it is to be reported.
  void receive(const Location& location);

 private:
  template <class T>
  void change(T Settings::*field, T value);
  bool isFarEnough(const Location& location) const;
  /// Has the ranged regions reported every second while there are any.
  void startSeconds();
  void passSecond();
  void reportRanging();
  /// Has the main queue run `step`, unless the manager is gone by then.
  void later(TimeInterval delay, std::function<void()> step);

  const std::shared_ptr<SimulatedLocationState> state_;
  LocationManagerDelegate* delegate_ = nullptr;
  /// The permission that the delegate was told last; none before the first time.
  std::optional<AuthorizationStatus> told_;
  Settings settings_;
  std::optional<Location> lastReported_;
  std::vector<IdentifiedBeaconRegion> ranged_;
  portable::MonitoredRegions monitored_;
  bool isSecondScheduled_ = false;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::simulation
