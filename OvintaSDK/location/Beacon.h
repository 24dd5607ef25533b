#pragma once

#include "../../platform/Date.h"
#include "OvintaSDK/location/Averager.h"
#include "OvintaSDK/location/BeaconIdentifiers.h"

namespace ovinta {

/// What is known of one beacon that was heard. A plain value.
struct Beacon {
  /// Which beacon it is.
  BeaconIdentifiers identifiers;
  /// Received signal strength in dBm, smoothed.
  Averager rssi = {};
  /// Estimated distance in metres, smoothed.
  Averager distance = {};
  /// When it was last heard; `platform::kDistantPast` before the first time. Not sent.
  platform::Date scannedAt = platform::kDistantPast;

  friend bool operator==(const Beacon&, const Beacon&) = default;
};

}  // namespace ovinta
