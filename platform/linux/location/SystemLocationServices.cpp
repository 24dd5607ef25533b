#include "platform/linux/location/SystemLocationServices.h"

#include <utility>

#include "platform/linux/location/SystemLocationManager.h"

namespace ovinta::platform::linuxos {

SystemLocationServices::SystemLocationServices(std::shared_ptr<PositionHub> hub,
                                               std::shared_ptr<BeaconScanner> scanner,
                                               std::shared_ptr<Geodesy> geodesy)
    : hub_(std::move(hub)), scanner_(std::move(scanner)), geodesy_(std::move(geodesy)) {}

bool SystemLocationServices::locationServicesEnabled() const { return hub_->isEnabled(); }

AuthorizationStatus SystemLocationServices::authorizationStatus() const { return hub_->status(); }

std::unique_ptr<LocationManager> SystemLocationServices::makeLocationManager() {
  hub_->findService();
  return std::make_unique<SystemLocationManager>(hub_, scanner_, geodesy_);
}

}  // namespace ovinta::platform::linuxos
