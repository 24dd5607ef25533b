#pragma once

#include <memory>

#include "platform/LocationManager.h"
#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/beacons/BeaconScanner.h"

namespace ovinta::platform::linuxos {

/// The location services of this system, whatever provider stands behind them, and BlueZ's beacons.
/// The system is not asked whether it has such a service before the application asks one of the two
/// questions, or starts something; the user's permission is not known before something was started
/// for the first time. Until then it is that of the process before where the hub keeps it,
/// otherwise services read as off and the permission as not determined. Destroyed on the main
/// thread.
class SystemLocationServices : public LocationServices {
 public:
  SystemLocationServices(std::shared_ptr<PositionHub> hub, std::shared_ptr<BeaconScanner> scanner);

  bool locationServicesEnabled() const override;
  AuthorizationStatus authorizationStatus() const override;
  std::unique_ptr<LocationManager> makeLocationManager() override;

 private:
  const std::shared_ptr<PositionHub> hub_;
  const std::shared_ptr<BeaconScanner> scanner_;
};

}  // namespace ovinta::platform::linuxos
