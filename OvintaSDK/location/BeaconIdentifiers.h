#pragma once

#include <compare>
#include <cstdint>

#include "platform/UUID.h"

namespace ovinta {

/// The identity of one physical beacon.
struct BeaconIdentifiers {
  platform::UUID uuid;
  std::uint16_t major = 0;
  std::uint16_t minor = 0;

  friend auto operator<=>(const BeaconIdentifiers&, const BeaconIdentifiers&) = default;
};

}  // namespace ovinta
