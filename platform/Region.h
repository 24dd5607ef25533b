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
  /// How far its border is from the centre, in metres.
  double radius = 0;
  /// Tells monitored regions apart.
  std::string identifier;
  /// Whether somebody wants to be told when the device enters, and when it leaves.
  bool notifyOnEntry = true;
  bool notifyOnExit = true;

  friend bool operator==(const CircularRegion&, const CircularRegion&) = default;
};

/// The beacons that share a proximity UUID and, where given, a major and a minor number, under an
/// identifier by which the platform knows them. A plain value.
struct IdentifiedBeaconRegion {
  /// The UUID that the beacons share.
  UUID proximityUUID;
  /// Absent: all numbers. A minor without a major means nothing.
  std::optional<std::uint16_t> major;
  std::optional<std::uint16_t> minor;
  /// Tells monitored regions apart.
  std::string identifier;

  friend bool operator==(const IdentifiedBeaconRegion&, const IdentifiedBeaconRegion&) = default;
};

/// The same type, under the name that applications may know it by. `ovinta::BeaconRegion`, which
/// the service describes, has no identifier.
using BeaconRegion = IdentifiedBeaconRegion;

/// A region of either kind.
using Region = std::variant<CircularRegion, IdentifiedBeaconRegion>;

/// The identifier of the region, valid as long as that is. May be called from any thread.
inline const std::string& identifier(const Region& region) {
  return std::visit([](const auto& shape) -> const std::string& { return shape.identifier; },
                    region);
}

}  // namespace ovinta::platform
