#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "platform/linux/dbus/Values.h"
#include "platform/linux/location/beacons/IBeacon.h"

namespace ovinta::platform::linuxos {

/// Those of BlueZ's devices that are beacons. BlueZ tells the parts of an advertisement one by one,
/// and what it has told before only when it is something else.
class BlueZDevices {
 public:
  /// Takes over properties of a device, all or those that have changed; returns the sighting that
  /// they speak of. Each advertisement brings the strength, and nothing else does.
  std::optional<BeaconSighting> note(const std::string& path, const dbus::Properties& properties);

  /// The same for a device that was there before, which need not be in hearing any more.
  void learn(const std::string& path, const dbus::Properties& properties);

  void forget(const std::string& path) { beacons_.erase(path); }
  void forgetAll() { beacons_.clear(); }

 private:
  std::unordered_map<std::string, IBeacon> beacons_;
};

}  // namespace ovinta::platform::linuxos
