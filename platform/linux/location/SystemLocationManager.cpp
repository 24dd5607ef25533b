#include "platform/linux/location/SystemLocationManager.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

constexpr double kSignificantChangeMetres = 500;

}  // namespace

SystemLocationManager::SystemLocationManager(std::shared_ptr<PositionHub> hub,
                                             std::shared_ptr<BeaconScanner> scanner,
                                             std::shared_ptr<Geodesy> geodesy)
    : hub_(std::move(hub)),
      geodesy_(std::move(geodesy)),
      beacons_(std::move(scanner), beaconHandlers()) {
  hub_->onStatusChanged(lifetime_.watch(), [this] { noteStatus(); });
  beacons_.setEnabled(isAuthorized(hub_->status()));
}

BeaconHandlers SystemLocationManager::beaconHandlers() {
  return {.onRanged =
              [this](const std::vector<RangedBeacon>& beacons, const BeaconRegion& region) {
                if (delegate_) delegate_->didRangeBeacons(beacons, region);
              },
          .onCrossed = [this](const BeaconRegion& region,
                              portable::RegionEvent event) { tellCrossing(region, event); }};
}

void SystemLocationManager::tellCrossing(const Region& region, portable::RegionEvent event) {
  if (!delegate_) return;
  event == portable::RegionEvent::entered ? delegate_->didEnterRegion(region)
                                          : delegate_->didExitRegion(region);
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

void SystemLocationManager::startMonitoring(const Region& region) {
  if (std::ranges::find(monitored_, region) != monitored_.end()) return;
  stopMonitoring(region);
  monitored_.push_back(region);
  if (const auto* beacons = std::get_if<BeaconRegion>(&region)) {
    return beacons_.startMonitoring(*beacons);
  }
  circles_.start(std::get<CircularRegion>(region));
  if (circleFixes_) return;
  circleFixes_ =
      hub_->open(portable::kRegionFilterMetres, [this](const Location& fix) { judgeCircles(fix); });
}

void SystemLocationManager::judgeCircles(const Location& fix) {
  const auto life = lifetime_.watch();
  for (const auto& [circle, event] : circles_.judge(fix, *geodesy_)) {
    // A delegate may destroy the manager, or stop what it monitors.
    if (life.expired()) return;
    const Region region(circle);
    if (std::ranges::find(monitored_, region) != monitored_.end()) tellCrossing(region, event);
  }
}

void SystemLocationManager::stopMonitoring(const Region& region) {
  std::erase_if(monitored_,
                [&](const Region& other) { return identifier(other) == identifier(region); });
  beacons_.stopMonitoring(identifier(region));
  circles_.stop(identifier(region));
  if (circles_.isEmpty()) circleFixes_ = nullptr;
}

}  // namespace ovinta::platform::linuxos
