#include "platform/linux/SystemLocationServices.h"

#include <utility>

#include "platform/linux/SystemLocationManager.h"
#include "platform/linux/position/PositionHub.h"

namespace ovinta::platform::linux {

SystemLocationServices::SystemLocationServices(std::shared_ptr<PositionProvider> provider,
                                               std::shared_ptr<MainQueue> mainQueue)
    : hub_(std::make_shared<PositionHub>(std::move(provider), std::move(mainQueue))) {}

bool SystemLocationServices::locationServicesEnabled() const { return hub_->isEnabled(); }

AuthorizationStatus SystemLocationServices::authorizationStatus() const { return hub_->status(); }

std::unique_ptr<LocationManager> SystemLocationServices::makeLocationManager() {
  hub_->findService();
  return std::make_unique<SystemLocationManager>(hub_);
}

}  // namespace ovinta::platform::linux
