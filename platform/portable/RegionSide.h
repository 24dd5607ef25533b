#pragma once

#include "platform/Location.h"
#include "platform/Region.h"

namespace ovinta::platform::portable {

/// The distance filter for positions that regions are judged by: fine enough for the surroundings
/// of a store, and nothing for a device that lies still.
inline constexpr double kRegionFilterMetres = 10;

enum class RegionSide { unknown, inside, outside };

/// The side of the border on which the whole circle of a fix's uncertainty lies; unknown when the
/// border runs through it. May be called from any thread.
inline RegionSide sideOf(const CircularRegion& region, const Location& fix,
                         const Geodesy& geodesy) {
  if (!(fix.horizontalAccuracy >= 0)) return RegionSide::unknown;
  const double distance = geodesy.distance(region.center, fix.coordinate);
  if (distance + fix.horizontalAccuracy <= region.radius) return RegionSide::inside;
  if (distance - fix.horizontalAccuracy > region.radius) return RegionSide::outside;
  return RegionSide::unknown;
}

/// Whether a fix that lies on `now` after one on `before` is an event of which the region wants to
/// be told: never while either is unknown.
inline bool fires(const CircularRegion& region, RegionSide before, RegionSide now) {
  using enum RegionSide;
  return (before == outside && now == inside && region.notifyOnEntry) ||
         (before == inside && now == outside && region.notifyOnExit);
}

}  // namespace ovinta::platform::portable
