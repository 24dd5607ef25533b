#include "platform/linux/SystemLocationManager.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linux {
namespace {

constexpr double kSignificantChangeMetres = 500;

}  // namespace

SystemLocationManager::SystemLocationManager(std::shared_ptr<PositionHub> hub)
    : hub_(std::move(hub)) {
  hub_->onStatusChanged(life_, [this] { tellStatus(); });
}

void SystemLocationManager::setDelegate(LocationManagerDelegate* delegate) {
  delegate_ = delegate;
  told_.reset();
  hub_->mainQueue().async([this, life = std::weak_ptr(life_)] {
    if (!life.expired()) tellStatus();
  });
}

void SystemLocationManager::tellStatus() {
  const AuthorizationStatus status = hub_->status();
  if (!delegate_ || std::exchange(told_, status) == status) return;
  delegate_->didChangeAuthorizationStatus(status);
}

void SystemLocationManager::setDistanceFilter(double metres) {
  distanceFilter_ = metres;
  if (updates_) updates_->setDistanceFilter(metres);
}

void SystemLocationManager::startUpdatingLocation() {
  if (updates_) return;
  lastReported_.reset();
  updates_ = hub_->open(distanceFilter_, [this](const Location& location) { report(location); });
}

void SystemLocationManager::startMonitoringSignificantLocationChanges() {
  if (significantChanges_) return;
  significantChanges_ = hub_->open(kSignificantChangeMetres, [this](const Location& location) {
    // Standard updates tell of the same moves, and of more.
    if (!updates_) report(location);
  });
}

void SystemLocationManager::report(const Location& location) {
  // Both kinds of updates may bring the same one, and the second be on its way when the first
  // stops.
  if (!delegate_ || std::exchange(lastReported_, location) == location) return;
  delegate_->didUpdateLocations({location});
}

void SystemLocationManager::startRangingBeacons(const BeaconRegion& region) {
  if (std::ranges::find(ranged_, region) == ranged_.end()) ranged_.push_back(region);
}

void SystemLocationManager::stopRangingBeacons(const BeaconRegion& region) {
  std::erase(ranged_, region);
}

std::vector<Region> SystemLocationManager::rangedRegions() const {
  return {ranged_.begin(), ranged_.end()};
}

void SystemLocationManager::startMonitoring(const Region& region) {
  stopMonitoring(region);
  monitored_.push_back(region);
}

void SystemLocationManager::stopMonitoring(const Region& region) {
  std::erase_if(monitored_,
                [&](const Region& other) { return identifier(other) == identifier(region); });
}

}  // namespace ovinta::platform::linux
