#pragma once

#include "../../platform/Date.h"
#include "OvintaSDK/location/Averager.h"
#include "OvintaSDK/location/BeaconIdentifiers.h"

namespace ovinta {

/// What is known of one beacon.
struct Beacon {
  BeaconIdentifiers identifiers;
  /// Received signal strength in dBm.
  Averager rssi = {};
  /// Estimated distance in metres.
  Averager distance = {};
  /// When it was last heard.
  platform::Date scannedAt = platform::kDistantPast;

  friend bool operator==(const Beacon&, const Beacon&) = default;
};

}  // namespace ovinta
