#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Location.h"
#include "UUID.h"

namespace ovinta::platform {

/// A circle on the map. A plain value.
struct CircularRegion {
  /// The centre.
  Coordinate center;
  /// Metres.
  double radius = 0;
  /// Tells monitored regions apart.
  std::string identifier;
  /// Whether somebody wants to be told when the device enters, and when it leaves.
  bool notifyOnEntry = true;
  bool notifyOnExit = true;

  friend bool operator==(const CircularRegion&, const CircularRegion&) = default;
};

/// The beacons that share a proximity UUID and, where given, a major and a minor number. A plain
/// value.
struct BeaconRegion {
  /// The UUID that the beacons share.
  UUID proximityUUID;
  /// Absent: all numbers. A minor without a major means nothing.
  std::optional<std::uint16_t> major;
  std::optional<std::uint16_t> minor;
  /// Tells monitored regions apart.
  std::string identifier;

  friend bool operator==(const BeaconRegion&, const BeaconRegion&) = default;
};

/// A region of either kind.
using Region = std::variant<CircularRegion, BeaconRegion>;

/// The identifier of the region, valid as long as that is. May be called from any thread.
inline const std::string& identifier(const Region& region) {
  return std::visit([](const auto& shape) -> const std::string& { return shape.identifier; },
                    region);
}

}  // namespace ovinta::platform
