#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include "platform/LocationManager.h"

namespace ovinta::platform::portable {

/// The exponent of the path-loss model in free space.
inline constexpr double kFreeSpaceExponent = 2;

/// The distance, in metres, to a sender that is heard at `rssi`, by the log-distance path-loss
/// model
///
///     d = 10 ^ ((measuredPower - rssi) / (10 * exponent))
///
/// (T. S. Rappaport, Wireless Communications: Principles and Practice, 2nd ed. 2002, section 4.9).
/// `measuredPower` is the strength at 1 m; both in dBm.
inline double pathLossDistance(double rssi, double measuredPower, double exponent) {
  return std::pow(10, (measuredPower - rssi) / (10 * exponent));
}

/// Whether the beacon belongs to the region.
inline bool covers(const IdentifiedBeaconRegion& region, const RangedBeacon& beacon) {
  const auto agrees = [](std::optional<std::uint16_t> wanted, std::int64_t heard) {
    return !wanted || *wanted == static_cast<std::uint16_t>(heard);
  };
  return beacon.proximityUUID == region.proximityUUID && agrees(region.major, beacon.major) &&
         agrees(region.minor, beacon.minor);
}

}  // namespace ovinta::platform::portable
