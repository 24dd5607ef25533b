#include "OvintaSDK/location/LocationUpdater.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/location/TrackingProfile.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {
namespace {

/// The distance filter, in metres, until the first position tells how far the site is.
constexpr double kInitialDistanceFilter = 3;

/// The regions of all orders, each as often as an order names it.
std::vector<BeaconRegion> beaconRegions(const OrderList& orders) {
  std::vector<BeaconRegion> regions;
  regions.reserve(orders.size());
  for (const OrderPtr& order : orders) {
    const auto& ofSite = order->siteBeaconRegions;
    if (ofSite) regions.insert(regions.end(), ofSite->begin(), ofSite->end());
  }
  return regions;
}

/// The regions, each once, in an order that depends on nothing else.
std::vector<BeaconRegion> distinct(std::vector<BeaconRegion> regions) {
  std::ranges::sort(regions);
  regions.erase(std::unique(regions.begin(), regions.end()), regions.end());
  return regions;
}

/// A region as the platform tells it from others that are ranged.
BeaconRegion asRanged(const platform::IdentifiedBeaconRegion& region) {
  return {region.proximityUUID, region.major, region.minor};
}

/// Whether the platform, after it has started these regions one after the other, ranges each of
/// them and monitors the last one, which replaces those before.
bool areTaken(const std::vector<BeaconRegion>& started, const std::vector<platform::Region>& ranged,
              const std::vector<platform::Region>& monitored) {
  std::vector<BeaconRegion> taken;
  for (const platform::Region& region : ranged) {
    const auto* beacons = std::get_if<platform::IdentifiedBeaconRegion>(&region);
    if (beacons) taken.push_back(asRanged(*beacons));
  }
  std::ranges::sort(taken);
  const auto isRanged = [&taken](const BeaconRegion& region) {
    return std::ranges::binary_search(taken, asRanged(region.region()));
  };
  return started.empty() ||
         (std::ranges::all_of(started, isRanged) &&
          std::ranges::count(monitored, platform::Region(started.back().region())) == 1);
}

}  // namespace

LocationUpdater::LocationUpdater(ContextPtr context, std::shared_ptr<Orders> orders)
    : context_(std::move(context)),
      orders_(std::move(orders)),
      manager_(services().location->makeLocationManager()),
      beaconList_(services().clock) {
  manager_->setDelegate(this);
  manager_->setAllowsBackgroundLocationUpdates(true);
  manager_->setDistanceFilter(kInitialDistanceFilter);
  const auto observe = [this](platform::NotificationName name,
                              void (LocationUpdater::*method)(const platform::Notification&)) {
    observers_.push_back(services().notificationCenter->addObserver(
        name, [this, method](const auto& notification) { (this->*method)(notification); }));
  };
  observe(SDKNotification::ordersUpdated, &LocationUpdater::ordersUpdated);
  observe(SDKNotification::orderUpdated, &LocationUpdater::ordersUpdated);
  observe(platform::kApplicationDidBecomeActive, &LocationUpdater::appForegrounded);
}

LocationUpdater::~LocationUpdater() = default;

OrderList LocationUpdater::openOrders() const { return orders_->open().value_or(OrderList{}); }

void LocationUpdater::ordersUpdated(const platform::Notification& /*notification*/) {
  services().mainQueue->async([this] { evaluateOrders(); });
}

void LocationUpdater::appForegrounded(const platform::Notification& /*notification*/) {}

void LocationUpdater::evaluateOrders() {
  // The orders may change at any time: each step looks at those that are open by then.
  if (openOrders().empty()) {
    if (tracking_) stopTracking();
  } else if (tracking_) {
    if (lastLocation_) {
      sendLocationUpdate();
      adjustAccuracy();
    }
    refreshBeaconRegions();
  } else {
    tracking_ = true;
    startTracking();
  }
}

void LocationUpdater::startTracking() {
  const platform::AuthorizationStatus status = services().location->authorizationStatus();
  if (platform::isAuthorized(status)) {
    authorized_ = true;
    if (tracking_) startUpdates();
  } else if (status == platform::kAuthorizationNotDetermined) {
    context_->post(SDKNotification::locationAuthorizationNotDetermined);
  } else {
    refuseTracking();
  }
}

void LocationUpdater::startUpdates() {
  // A platform may have dropped regions with the permission and still list them.
  watch_.reset();
  refreshBeaconRegions();
  manager_->setDesiredAccuracy(platform::LocationAccuracy::best);
  manager_->startUpdatingLocation();
  manager_->startMonitoringSignificantLocationChanges();
  context_->log("Starting LocationUpdater");
}

void LocationUpdater::refuseTracking() {
  context_->post(SDKNotification::locationNotAuthorized);
  context_->log("Inadequate location authorization to continue");
}

void LocationUpdater::stopTracking() {
  tracking_ = false;
  stopBeaconRegions();
  manager_->stopUpdatingLocation();
  manager_->stopMonitoringSignificantLocationChanges();
}

void LocationUpdater::stopBeaconRegions() {
  watch_.reset();
  for (const platform::Region& region : manager_->rangedRegions()) {
    if (const auto* beaconRegion = std::get_if<platform::IdentifiedBeaconRegion>(&region)) {
      manager_->stopRangingBeacons(*beaconRegion);
    }
  }
  // Every monitored region is stopped, also one that other code has started.
  for (const platform::Region& region : manager_->monitoredRegions()) {
    manager_->stopMonitoring(region);
  }
}

void LocationUpdater::refreshBeaconRegions() {
  auto named = beaconRegions(openOrders());
  if (isWatching(named)) return;
  stopBeaconRegions();
  auto wanted = distinct(named);
  for (const BeaconRegion& region : wanted) {
    manager_->startRangingBeacons(region.region());
    manager_->startMonitoring(region.region());
  }
  auto ranged = manager_->rangedRegions();
  auto monitored = manager_->monitoredRegions();
  // What the platform did not take is asked for again the next time.
  if (!areTaken(wanted, ranged, monitored)) return;
  watch_ = Watch{std::move(named), std::move(wanted), std::move(ranged), std::move(monitored)};
}

bool LocationUpdater::isWatching(const std::vector<BeaconRegion>& named) const {
  return watch_ && (watch_->named == named || watch_->wanted == distinct(named)) &&
         watch_->ranged == manager_->rangedRegions() &&
         watch_->monitored == manager_->monitoredRegions();
}

void LocationUpdater::adjustAccuracy() {
  const auto distance = lastLocation_ ? nearestSiteDistance(*lastLocation_) : std::nullopt;
  if (!distance) return;
  const TrackingProfile profile = trackingProfile(*distance, services().device->batteryState());
  manager_->setDesiredAccuracy(profile.desiredAccuracy);
  manager_->setActivityType(profile.activityType);
  manager_->setDistanceFilter(profile.distanceFilter);
}

std::optional<double> LocationUpdater::nearestSiteDistance(
    const platform::Location& location) const {
  std::optional<double> nearest;
  for (const OrderPtr& order : openOrders()) {
    const auto distance = order->siteDistance(location);
    // A site whose coordinates are out of range is at no distance: it is left out.
    if (!distance || std::isnan(*distance)) continue;
    if (!nearest || *distance < *nearest) nearest = distance;
  }
  return nearest;
}

}  // namespace ovinta
