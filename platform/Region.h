#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Location.h"
#include "UUID.h"

namespace ovinta::platform {

/// A circle on the map.
struct CircularRegion {
  Coordinate center;
  /// Metres.
  double radius = 0;
  std::string identifier;
  bool notifyOnEntry = true;
  bool notifyOnExit = true;

  friend bool operator==(const CircularRegion&, const CircularRegion&) = default;
};

/// The beacons that share a proximity UUID and, where given, a major and a minor number.
struct BeaconRegion {
  UUID proximityUUID;
  std::optional<std::uint16_t> major;
  std::optional<std::uint16_t> minor;
  std::string identifier;

  friend bool operator==(const BeaconRegion&, const BeaconRegion&) = default;
};

using Region = std::variant<CircularRegion, BeaconRegion>;

inline const std::string& identifier(const Region& region) {
  return std::visit([](const auto& shape) -> const std::string& { return shape.identifier; },
                    region);
}

}  // namespace ovinta::platform
