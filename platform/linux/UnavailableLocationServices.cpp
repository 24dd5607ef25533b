#include "platform/linux/UnavailableLocationServices.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linux {
namespace {

constexpr AuthorizationStatus kNotDetermined = 0;

class UnavailableLocationManager : public LocationManager {
 public:
  explicit UnavailableLocationManager(std::shared_ptr<MainQueue> mainQueue)
      : mainQueue_(std::move(mainQueue)) {}

  void setDelegate(LocationManagerDelegate* delegate) override {
    // A new cell each time: what was queued for an earlier delegate finds its own one gone.
    delegate_ = delegate ? std::make_shared<LocationManagerDelegate*>(delegate) : nullptr;
    if (!delegate) return;
    mainQueue_->async([current = std::weak_ptr(delegate_)] {
      if (const auto cell = current.lock()) (*cell)->didChangeAuthorizationStatus(kNotDetermined);
    });
  }

  void setAllowsBackgroundLocationUpdates(bool) override {}
  void setDistanceFilter(double) override {}
  void setDesiredAccuracy(LocationAccuracy) override {}
  void setActivityType(ActivityType) override {}
  void startUpdatingLocation() override {}
  void stopUpdatingLocation() override {}
  void startMonitoringSignificantLocationChanges() override {}
  void stopMonitoringSignificantLocationChanges() override {}

  void startRangingBeacons(const BeaconRegion& region) override {
    if (std::ranges::find(ranged_, Region(region)) == ranged_.end()) ranged_.emplace_back(region);
  }
  void stopRangingBeacons(const BeaconRegion& region) override {
    std::erase(ranged_, Region(region));
  }
  std::vector<Region> rangedRegions() const override { return ranged_; }

  void startMonitoring(const Region& region) override {
    stopMonitoring(region);
    monitored_.push_back(region);
  }
  void stopMonitoring(const Region& region) override {
    std::erase_if(monitored_,
                  [&](const Region& other) { return identifier(other) == identifier(region); });
  }
  std::vector<Region> monitoredRegions() const override { return monitored_; }

 private:
  std::shared_ptr<MainQueue> mainQueue_;
  std::shared_ptr<LocationManagerDelegate*> delegate_;
  std::vector<Region> ranged_;
  std::vector<Region> monitored_;
};

}  // namespace

UnavailableLocationServices::UnavailableLocationServices(std::shared_ptr<MainQueue> mainQueue)
    : mainQueue_(std::move(mainQueue)) {}

bool UnavailableLocationServices::locationServicesEnabled() const { return false; }

AuthorizationStatus UnavailableLocationServices::authorizationStatus() const {
  return kNotDetermined;
}

std::unique_ptr<LocationManager> UnavailableLocationServices::makeLocationManager() {
  return std::make_unique<UnavailableLocationManager>(mainQueue_);
}

}  // namespace ovinta::platform::linux
