#include <chrono>
#include <string>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/location/LocationUpdater.h"
#include "OvintaSDK/model/LocationUpdateEvent.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {
namespace {

using namespace std::chrono_literals;

/// The shortest time between two sends, and the delay after which a new position is looked at.
constexpr auto kSendInterval = 2s;
/// The shortest time from one send to the next that a beacon causes.
constexpr auto kBeaconSendInterval = 5s;
/// A position of this age or older is never sent.
constexpr auto kLocationLifetime = 30s;

}  // namespace

void LocationUpdater::didUpdateLocations(const std::vector<platform::Location>& locations) {
  if (locations.empty()) return;
  lastLocation_ = locations.back();
  services().mainQueue->asyncAfter(kSendInterval, [this] { checkLocationUpdate(); });
}

void LocationUpdater::checkLocationUpdate() {
  if (locationSentAt_ >= now() - kSendInterval) return;
  context_->post(SDKNotification::locationUpdate,
                 lastLocation_ ? std::any(*lastLocation_) : std::any());
  sendLocationUpdate();
  adjustAccuracy();
}

void LocationUpdater::didRangeBeacons(const std::vector<platform::RangedBeacon>& beacons,
                                      const platform::IdentifiedBeaconRegion& /*region*/) {
  beaconList_.update(beacons);
  if (!beaconList_.empty() && locationSentAt_ < now() - kBeaconSendInterval) sendLocationUpdate();
}

void LocationUpdater::sendLocationUpdate() {
  // The time is set before anything can fail, because an attempt that sends nothing counts as well.
  locationSentAt_ = now();
  beaconList_.prune();
  const std::vector<Beacon> beacons = beaconList_.list();
  const auto orders = orders_->open();
  if (!orders || !lastLocation_ || lastLocation_->timestamp <= now() - kLocationLifetime) return;
  context_->log("sending location update");
  for (const OrderPtr& order : *orders) {
    orders_->queueEvent(locationUpdateEvent(order->id, *lastLocation_, beacons, std::nullopt));
  }
}

void LocationUpdater::didChangeAuthorizationStatus(platform::AuthorizationStatus status) {
  handleAuthorizationChange(status);
}

void LocationUpdater::handleAuthorizationChange(platform::AuthorizationStatus status) {
  context_->post(SDKNotification::locationAuthorizationChanged);
  authorized_ = platform::isAuthorized(status);
  if (!platform::isAuthorized(status)) {
    refuseTracking();
  } else if (tracking_) {
    startUpdates();
  }
  const std::string text = std::to_string(status);
  if (context_->setting(UserDefaultsKey::lastKnownAuthStatus) == text) return;
  services().settings->set(UserDefaultsKey::lastKnownAuthStatus.rawValue(), text);
  reportPermission(status);
}

void LocationUpdater::reportPermission(platform::AuthorizationStatus status) {
  const auto known = stateFromRawValue<LocationAuthStatus>(status);
  const auto orders = orders_->open();
  if (!known || !orders) return;
  for (const OrderPtr& order : *orders) {
    orders_->event(OrderEvent::permissionUpdate(order->id, *known));
  }
}

}  // namespace ovinta
