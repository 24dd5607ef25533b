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
  const auto repeated = std::ranges::unique(regions);
  regions.erase(repeated.begin(), repeated.end());
  return regions;
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
  const OrderList orders = openOrders();
  if (orders.empty()) {
    if (tracking_) stopTracking();
  } else if (tracking_) {
    if (lastLocation_) {
      sendLocationUpdate();
      adjustAccuracy();
    }
    refreshBeaconRegions(orders);
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
  refreshBeaconRegions(openOrders());
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

void LocationUpdater::refreshBeaconRegions(const OrderList& orders) {
  auto named = beaconRegions(orders);
  if (isWatching(named)) return;
  stopBeaconRegions();
  auto wanted = distinct(named);
  for (const BeaconRegion& region : wanted) {
    manager_->startRangingBeacons(region.region());
    manager_->startMonitoring(region.region());
  }
  auto ranged = manager_->rangedRegions();
  // What the platform did not take is asked for again the next time.
  if (ranged.size() < wanted.size()) return;
  watch_ =
      Watch{std::move(named), std::move(wanted), std::move(ranged), manager_->monitoredRegions()};
}

/// Whether the manager is still as it was when these regions were started, so that to stop all
/// regions and start these would leave it as it is.
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
