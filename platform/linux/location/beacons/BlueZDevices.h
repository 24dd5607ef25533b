#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "platform/linux/dbus/Values.h"
#include "platform/linux/location/beacons/IBeacon.h"

namespace ovinta::platform::linuxos {

/// Knows which of BlueZ's devices are beacons. BlueZ tells the parts of an advertisement one by
/// one, and what it has told before only when it has changed.
class BlueZDevices {
 public:
  /// Takes over properties of a device, all or those that have changed; returns the sighting that
  /// they speak of. Each advertisement brings the strength, and nothing else does.
  std::optional<BeaconSighting> note(const std::string& path, const dbus::Properties& properties);

  /// Takes over the properties of a device that was there before, which need not be in hearing any
  /// more, so that there is no sighting.
  void learn(const std::string& path, const dbus::Properties& properties);

  void forget(const std::string& path) { beacons_.erase(path); }
  void forgetAll() { beacons_.clear(); }

 private:
  std::unordered_map<std::string, IBeacon> beacons_;
};

}  // namespace ovinta::platform::linuxos
