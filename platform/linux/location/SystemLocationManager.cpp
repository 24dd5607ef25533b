#include "platform/linux/location/SystemLocationManager.h"

#include <utility>

namespace ovinta::platform::linuxos {
namespace {

constexpr double kSignificantChangeMetres = 500;

}  // namespace

SystemLocationManager::SystemLocationManager(std::shared_ptr<PositionHub> hub,
                                             std::shared_ptr<BeaconScanner> scanner)
    : hub_(std::move(hub)),
      beacons_(std::move(scanner), [this](const std::vector<RangedBeacon>& beacons,
                                          const IdentifiedBeaconRegion& region) {
        if (delegate_) delegate_->didRangeBeacons(beacons, region);
      }) {
  hub_->onStatusChanged(lifetime_.watch(), [this] { noteStatus(); });
  beacons_.setEnabled(isAuthorized(hub_->status()));
}

void SystemLocationManager::noteStatus() {
  beacons_.setEnabled(isAuthorized(hub_->status()));
  tellStatus();
}

void SystemLocationManager::setDelegate(LocationManagerDelegate* delegate) {
  delegate_ = delegate;
  told_.reset();
  hub_->mainQueue().async(lifetime_.guard([this] { tellStatus(); }));
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

std::vector<Region> SystemLocationManager::rangedRegions() const {
  const auto& regions = beacons_.rangedRegions();
  return {regions.begin(), regions.end()};
}

}  // namespace ovinta::platform::linuxos
