#include "platform/simulation/location/SimulatedLocationManager.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::simulation {
namespace {

constexpr double kSignificantChangeMetres = 500;
constexpr TimeInterval kSecond = std::chrono::seconds(1);

}  // namespace

SimulatedLocationManager::SimulatedLocationManager(std::shared_ptr<SimulatedLocationState> state)
    : state_(std::move(state)) {
  state_->managers.push_back(this);
}

SimulatedLocationManager::~SimulatedLocationManager() { std::erase(state_->managers, this); }

void SimulatedLocationManager::later(TimeInterval delay, std::function<void()> step) {
  state_->mainQueue->asyncAfter(delay, lifetime_.guard(std::move(step)));
}

void SimulatedLocationManager::setDelegate(LocationManagerDelegate* delegate) {
  delegate_ = delegate;
  told_.reset();
  announceStatus(state_->status);
}

void SimulatedLocationManager::announceStatus(AuthorizationStatus status) {
  later(TimeInterval::zero(), [this, status] {
    if (!delegate_ || std::exchange(told_, status) == status) return;
    delegate_->didChangeAuthorizationStatus(status);
  });
}

template <class T>
void SimulatedLocationManager::change(T Settings::*field, T value) {
  if (std::exchange(settings_.*field, value) != value) state_->notifySettingsChanged();
}

void SimulatedLocationManager::setAllowsBackgroundLocationUpdates(bool allows) {
  change(&Settings::allowsBackgroundUpdates, allows);
}

void SimulatedLocationManager::setDistanceFilter(double metres) {
  if (metres != settings_.distanceFilter) ++state_->distanceFilterChanges;
  change(&Settings::distanceFilter, metres);
}

void SimulatedLocationManager::setDesiredAccuracy(LocationAccuracy accuracy) {
  change(&Settings::desiredAccuracy, std::optional(accuracy));
}

void SimulatedLocationManager::setActivityType(ActivityType type) {
  change(&Settings::activityType, type);
}

void SimulatedLocationManager::startUpdatingLocation() {
  if (!settings_.isUpdating) lastReported_.reset();
  change(&Settings::isUpdating, true);
}

void SimulatedLocationManager::stopUpdatingLocation() { change(&Settings::isUpdating, false); }

void SimulatedLocationManager::startMonitoringSignificantLocationChanges() {
  change(&Settings::isMonitoringSignificantChanges, true);
}

void SimulatedLocationManager::stopMonitoringSignificantLocationChanges() {
  change(&Settings::isMonitoringSignificantChanges, false);
}

bool SimulatedLocationManager::isFarEnough(const Location& location) const {
  auto filter = std::numeric_limits<double>::infinity();
  if (settings_.isUpdating) filter = settings_.distanceFilter;
  if (settings_.isMonitoringSignificantChanges) filter = std::min(filter, kSignificantChangeMetres);
  if (!settings_.isUpdating && !settings_.isMonitoringSignificantChanges) return false;
  return !lastReported_ ||
         state_->geodesy->distance(lastReported_->coordinate, location.coordinate) >= filter;
}

void SimulatedLocationManager::receive(const Location& location) {
  if (!delegate_ || !isFarEnough(location)) return;
  lastReported_ = location;
  delegate_->didUpdateLocations({location});
}

void SimulatedLocationManager::startRangingBeacons(const IdentifiedBeaconRegion& region) {
  if (std::ranges::find(ranged_, region) == ranged_.end()) ranged_.push_back(region);
  startSeconds();
}

void SimulatedLocationManager::stopRangingBeacons(const IdentifiedBeaconRegion& region) {
  std::erase(ranged_, region);
}

void SimulatedLocationManager::startSeconds() {
  if (std::exchange(isSecondScheduled_, true)) return;
  later(kSecond, [this] { passSecond(); });
}

void SimulatedLocationManager::passSecond() {
  isSecondScheduled_ = false;
  if (ranged_.empty()) return;
  startSeconds();
  if (delegate_ && state_->isOpen()) reportRanging();
}

void SimulatedLocationManager::reportRanging() {
  // A copy is walked, because the delegate may change what is ranged, and may destroy the manager.
  const auto regions = ranged_;
  const auto life = lifetime_.watch();
  for (const auto& region : regions) {
    if (std::ranges::find(ranged_, region) == ranged_.end()) continue;
    std::vector<RangedBeacon> heard;
    std::ranges::copy_if(
        state_->beacons, std::back_inserter(heard),
        [&](const RangedBeacon& beacon) { return portable::covers(region, beacon); });
    delegate_->didRangeBeacons(heard, region);
    if (life.expired() || !delegate_) return;
  }
}

std::vector<Region> SimulatedLocationManager::rangedRegions() const {
  return {ranged_.begin(), ranged_.end()};
}

}  // namespace ovinta::platform::simulation
