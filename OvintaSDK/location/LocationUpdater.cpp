#include "OvintaSDK/location/LocationUpdater.h"

#include <cmath>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/location/TrackingProfile.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {
namespace {

/// The distance filter, in metres, until the first position tells how far the site is.
constexpr double kInitialDistanceFilter = 3;

std::set<BeaconRegion> beaconRegions(const OrderList& orders) {
  std::set<BeaconRegion> regions;
  for (const OrderPtr& order : orders) {
    if (order->siteBeaconRegions) {
      regions.insert(order->siteBeaconRegions->begin(), order->siteBeaconRegions->end());
    }
  }
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
  stopBeaconRegions();
  for (const BeaconRegion& region : beaconRegions(openOrders())) {
    manager_->startRangingBeacons(region.region());
    manager_->startMonitoring(region.region());
  }
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
