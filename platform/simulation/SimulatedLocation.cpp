#include "platform/simulation/SimulatedLocation.h"

#include <algorithm>
#include <utility>

#include "platform/simulation/LocationHub.h"
#include "platform/simulation/SimulatedLocationManager.h"

namespace ovinta::platform::simulation {
namespace {

SimulatedLocationManager::Settings settingsOf(const LocationHub& hub) {
  return hub.managers.empty() ? SimulatedLocationManager::Settings{}
                              : hub.managers.back()->settings();
}

}  // namespace

SimulatedLocation::SimulatedLocation(std::shared_ptr<MainQueue> mainQueue,
                                     std::shared_ptr<Geodesy> geodesy)
    : hub_(std::make_shared<LocationHub>(std::move(mainQueue), std::move(geodesy))) {}

SimulatedLocation::~SimulatedLocation() = default;

bool SimulatedLocation::locationServicesEnabled() const { return hub_->servicesEnabled; }

AuthorizationStatus SimulatedLocation::authorizationStatus() const { return hub_->status; }

std::unique_ptr<LocationManager> SimulatedLocation::makeLocationManager() {
  return std::make_unique<SimulatedLocationManager>(hub_);
}

void SimulatedLocation::setAuthorizationStatus(AuthorizationStatus status) {
  if (hub_->status.exchange(status) == status) return;
  for (auto* manager : hub_->managers) manager->announceStatus(status);
}

void SimulatedLocation::setLocationServicesEnabled(bool enabled) {
  hub_->servicesEnabled = enabled;
}

void SimulatedLocation::deliver(Location location) {
  hub_->mainQueue->async([hub = hub_, location] {
    if (!hub->isOpen()) return;
    if (hub->positionObserver) hub->positionObserver(location);
    // A delegate may make and destroy managers.
    const auto managers = hub->managers;
    for (auto* manager : managers) {
      if (std::ranges::find(hub->managers, manager) != hub->managers.end()) {
        manager->receive(location);
      }
    }
  });
}

void SimulatedLocation::setBeaconsInRange(std::vector<RangedBeacon> beacons) {
  hub_->beacons = std::move(beacons);
}

void SimulatedLocation::onPosition(std::function<void(const Location&)> observer) {
  hub_->positionObserver = std::move(observer);
}

void SimulatedLocation::onSettingsChanged(std::function<void()> observer) {
  hub_->settingsObserver = std::move(observer);
}

std::optional<LocationAccuracy> SimulatedLocation::desiredAccuracy() const {
  return settingsOf(*hub_).desiredAccuracy;
}

double SimulatedLocation::distanceFilter() const { return settingsOf(*hub_).distanceFilter; }

ActivityType SimulatedLocation::activityType() const { return settingsOf(*hub_).activityType; }

bool SimulatedLocation::allowsBackgroundUpdates() const {
  return settingsOf(*hub_).allowsBackgroundUpdates;
}

bool SimulatedLocation::isUpdating() const { return settingsOf(*hub_).isUpdating; }

bool SimulatedLocation::isMonitoringSignificantChanges() const {
  return settingsOf(*hub_).isMonitoringSignificantChanges;
}

std::vector<Region> SimulatedLocation::rangedRegions() const {
  return hub_->managers.empty() ? std::vector<Region>{} : hub_->managers.back()->rangedRegions();
}

std::vector<Region> SimulatedLocation::monitoredRegions() const {
  return hub_->managers.empty() ? std::vector<Region>{} : hub_->managers.back()->monitoredRegions();
}

std::size_t SimulatedLocation::distanceFilterChangeCount() const {
  return hub_->distanceFilterChanges;
}

}  // namespace ovinta::platform::simulation
