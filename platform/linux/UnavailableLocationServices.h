#pragma once

#include <memory>

#include "platform/LocationManager.h"
#include "platform/MainQueue.h"

namespace ovinta::platform::linux {

/// Location services of a system without any: switched off, permission not determined. Its managers
/// keep what they are told and find nothing.
class UnavailableLocationServices : public LocationServices {
 public:
  explicit UnavailableLocationServices(std::shared_ptr<MainQueue> mainQueue);

  bool locationServicesEnabled() const override;
  AuthorizationStatus authorizationStatus() const override;
  std::unique_ptr<LocationManager> makeLocationManager() override;

 private:
  std::shared_ptr<MainQueue> mainQueue_;
};

}  // namespace ovinta::platform::linux
