#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "../../platform/Export.h"
#include "../../platform/Region.h"
#include "../../platform/UUID.h"

namespace ovinta {

/// Some of the beacons of a site, as the service describes them. Two are equal when all three
/// fields are. A plain value.
struct OVINTA_EXPORT BeaconRegion {
  /// The proximity UUID that the beacons share.
  platform::UUID uuid;
  /// Absent: all majors.
  std::optional<std::uint16_t> major;
  /// Absent: all minors. Without a major it means nothing.
  std::optional<std::uint16_t> minor;

  /// The platform's region for this one, without a minor where there is no major. Every one bears
  /// the identifier "siteBeaconRegion". May be called from any thread.
  platform::IdentifiedBeaconRegion region() const;

  friend auto operator<=>(const BeaconRegion&, const BeaconRegion&) = default;
};

}  // namespace ovinta

/// An absent number counts as 0, a present one as 1 and its value: absent and 0 differ.
template <>
struct OVINTA_EXPORT std::hash<ovinta::BeaconRegion> {
  std::size_t operator()(const ovinta::BeaconRegion& region) const noexcept;
};
