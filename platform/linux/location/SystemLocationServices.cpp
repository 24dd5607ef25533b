#include "platform/linux/location/SystemLocationServices.h"

#include <utility>

#include "platform/linux/location/SystemLocationManager.h"

namespace ovinta::platform::linuxos {

SystemLocationServices::SystemLocationServices(std::shared_ptr<PositionHub> hub,
                                               std::shared_ptr<BeaconScanner> scanner)
    : hub_(std::move(hub)), scanner_(std::move(scanner)) {}

bool SystemLocationServices::locationServicesEnabled() const {
  hub_->findService();
  return hub_->isEnabled();
}

AuthorizationStatus SystemLocationServices::authorizationStatus() const {
  // Whether the service is there makes a difference to an answer of old only.
  if (hub_->isOfOld()) hub_->findService();
  return hub_->status();
}

std::unique_ptr<LocationManager> SystemLocationServices::makeLocationManager() {
  return std::make_unique<SystemLocationManager>(hub_, scanner_);
}

}  // namespace ovinta::platform::linuxos
