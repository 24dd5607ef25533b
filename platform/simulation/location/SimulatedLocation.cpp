#include "platform/simulation/location/SimulatedLocation.h"

#include <algorithm>
#include <utility>

#include "platform/simulation/location/SimulatedLocationManager.h"
#include "platform/simulation/location/SimulatedLocationState.h"

namespace ovinta::platform::simulation {
namespace {

SimulatedLocationManager::Settings settingsOf(const SimulatedLocationState& state) {
  return state.managers.empty() ? SimulatedLocationManager::Settings{}
                                : state.managers.back()->settings();
}

}  // namespace

SimulatedLocation::SimulatedLocation(std::shared_ptr<MainQueue> mainQueue,
                                     std::shared_ptr<Geodesy> geodesy)
    : state_(std::make_shared<SimulatedLocationState>(std::move(mainQueue), std::move(geodesy))) {}

SimulatedLocation::~SimulatedLocation() = default;

bool SimulatedLocation::locationServicesEnabled() const { return state_->servicesEnabled; }

AuthorizationStatus SimulatedLocation::authorizationStatus() const { return state_->status; }

std::unique_ptr<LocationManager> SimulatedLocation::makeLocationManager() {
  return std::make_unique<SimulatedLocationManager>(state_);
}

void SimulatedLocation::setAuthorizationStatus(AuthorizationStatus status) {
  if (state_->status.exchange(status) == status) return;
  for (auto* manager : state_->managers) manager->announceStatus(status);
}

void SimulatedLocation::setLocationServicesEnabled(bool enabled) {
  state_->servicesEnabled = enabled;
}

void SimulatedLocation::deliver(Location location) {
  state_->mainQueue->async([state = state_, location] {
    if (!state->isOpen()) return;
    if (state->positionObserver) state->positionObserver(location);
    // A copy is walked, because a delegate may make and destroy managers.
    const auto managers = state->managers;
    for (auto* manager : managers) {
      if (std::ranges::find(state->managers, manager) != state->managers.end()) {
        manager->receive(location);
      }
    }
  });
}

void SimulatedLocation::setBeaconsInRange(std::vector<RangedBeacon> beacons) {
  state_->beacons = std::move(beacons);
}

void SimulatedLocation::onPosition(std::function<void(const Location&)> observer) {
  state_->positionObserver = std::move(observer);
}

void SimulatedLocation::onSettingsChanged(std::function<void()> observer) {
  state_->settingsObserver = std::move(observer);
}

std::optional<LocationAccuracy> SimulatedLocation::desiredAccuracy() const {
  return settingsOf(*state_).desiredAccuracy;
}

double SimulatedLocation::distanceFilter() const { return settingsOf(*state_).distanceFilter; }

ActivityType SimulatedLocation::activityType() const { return settingsOf(*state_).activityType; }

bool SimulatedLocation::allowsBackgroundUpdates() const {
  return settingsOf(*state_).allowsBackgroundUpdates;
}

bool SimulatedLocation::isUpdating() const { return settingsOf(*state_).isUpdating; }

bool SimulatedLocation::isMonitoringSignificantChanges() const {
  return settingsOf(*state_).isMonitoringSignificantChanges;
}

std::vector<Region> SimulatedLocation::rangedRegions() const {
  return state_->managers.empty() ? std::vector<Region>{}
                                  : state_->managers.back()->rangedRegions();
}

std::vector<Region> SimulatedLocation::monitoredRegions() const {
  return state_->managers.empty() ? std::vector<Region>{}
                                  : state_->managers.back()->monitoredRegions();
}

std::size_t SimulatedLocation::distanceFilterChangeCount() const {
  return state_->distanceFilterChanges;
}

}  // namespace ovinta::platform::simulation
