#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/UUID.h"

namespace ovinta::platform::linuxos {

/// The number of the maker under whose name beacons advertise.
inline constexpr std::uint16_t kBeaconCompany = 0x004C;

/// What a beacon says of itself.
struct IBeacon {
  UUID proximityUUID;
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  /// The strength at a distance of 1 m, in dBm.
  std::int8_t measuredPower = 0;

  friend bool operator==(const IBeacon&, const IBeacon&) = default;
};

/// A beacon as heard once.
struct BeaconSighting {
  IBeacon beacon;
  /// The received signal strength in dBm, below zero; absent when it is unknown.
  std::optional<int> rssi;
};

/// Reads what was sent in the name of `kBeaconCompany`; absent when that is no beacon's. Bytes that
/// follow the beacon's do not matter.
std::optional<IBeacon> readIBeacon(std::span<const std::uint8_t> data);

}  // namespace ovinta::platform::linuxos
