#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "OvintaSDK/core/Context.h"
#include "OvintaSDK/location/BeaconList.h"
#include "OvintaSDK/location/BeaconRegion.h"
#include "OvintaSDK/model/Order.h"
#include "OvintaSDK/model/OrderEvent.h"
#include "platform/LocationManager.h"
#include "platform/NotificationCenter.h"

namespace ovinta {

class Orders;

/// Follows the user while orders are open and reports positions, beacons and changes of permission
/// to the service. Keeps no orders of its own: it looks at those of the orders manager each time.
/// Made and used on the main thread only; lives as long as the process.
class LocationUpdater final : public platform::LocationManagerDelegate {
 public:
  LocationUpdater(ContextPtr context, std::shared_ptr<Orders> orders);
  ~LocationUpdater() override;
  LocationUpdater(const LocationUpdater&) = delete;
  LocationUpdater& operator=(const LocationUpdater&) = delete;

  /// Stops following; what is known of position and beacons is kept.
  void stopTracking();

  void didUpdateLocations(const std::vector<platform::Location>& locations) override;
  void didChangeAuthorizationStatus(platform::AuthorizationStatus status) override;
  void didRangeBeacons(const std::vector<platform::RangedBeacon>& beacons,
                       const platform::IdentifiedBeaconRegion& region) override;

 private:
  /// What was started for the beacons of the open orders.
  struct Watch {
    /// The regions that the orders named, in their order.
    std::vector<BeaconRegion> named;
    /// The same, each once.
    std::vector<BeaconRegion> wanted;
    /// What the manager then ranged and monitored.
    std::vector<platform::Region> ranged;
    std::vector<platform::Region> monitored;
  };

  /// Observes the notifications about orders, on whatever thread they are posted; the work is done
  /// on the main queue.
  void ordersUpdated(const platform::Notification& notification);
  /// Observes that the application became active, when nothing has to be done.
  void appForegrounded(const platform::Notification& notification);

  void evaluateOrders();
  void startTracking();
  void startUpdates();
  void refuseTracking();

  /// Has the manager range and monitor the beacons of the open orders and nothing else.
  void refreshBeaconRegions();
  /// Whether the manager is still as it was when these regions were started, so that to stop all
  /// regions and start these would leave it as it is.
  bool isWatching(const std::vector<BeaconRegion>& named) const;
  void stopBeaconRegions();
  void checkLocationUpdate();
  void sendLocationUpdate();
  void adjustAccuracy();
  std::optional<double> nearestSiteDistance(const platform::Location& location) const;
  OrderList openOrders() const;
  const platform::Services& services() const { return context_->services(); }
  platform::Date now() const { return services().clock->now(); }
  void handleAuthorizationChange(platform::AuthorizationStatus status);
  void reportPermission(platform::AuthorizationStatus status);

  const ContextPtr context_;
  const std::shared_ptr<Orders> orders_;
  const std::unique_ptr<platform::LocationManager> manager_;
  /// Whether the permission sufficed when it was last looked at. Nothing depends on it.
  bool authorized_ = false;
  bool tracking_ = false;
  std::optional<platform::Location> lastLocation_;
  /// When sending was last attempted, whether or not there was anything to send.
  platform::Date locationSentAt_ = platform::kDistantPast;
  BeaconList beaconList_;
  /// Absent where nothing was started, or not all of it taken.
  std::optional<Watch> watch_;
  std::vector<std::unique_ptr<platform::NotificationObserver>> observers_;
};

}  // namespace ovinta
