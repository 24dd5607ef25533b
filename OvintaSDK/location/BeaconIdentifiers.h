#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "../../platform/Export.h"
#include "../../platform/UUID.h"

namespace ovinta {

/// The identity of one physical beacon, as it sends it itself. A plain value.
struct BeaconIdentifiers {
  /// The proximity UUID, which beacons of one owner share; the numbers tell them apart.
  platform::UUID uuid;
  std::uint16_t major = 0;
  std::uint16_t minor = 0;

  friend auto operator<=>(const BeaconIdentifiers&, const BeaconIdentifiers&) = default;
};

}  // namespace ovinta

template <>
struct OVINTA_EXPORT std::hash<ovinta::BeaconIdentifiers> {
  std::size_t operator()(const ovinta::BeaconIdentifiers& identifiers) const noexcept;
};
