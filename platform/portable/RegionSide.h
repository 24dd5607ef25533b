#pragma once

#include <optional>

#include "platform/Location.h"
#include "platform/Region.h"

namespace ovinta::platform::portable {

/// The distance filter for positions that regions are judged by: fine enough for the surroundings
/// of a store, and nothing for a device that lies still.
inline constexpr double kRegionFilterMetres = 10;

enum class RegionSide { unknown, inside, outside };
enum class RegionEvent { entered, left };

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

/// What a fix that lies on `now` means after one on `before`: nothing while either is unknown, and
/// nothing that the region does not want to be told.
inline std::optional<RegionEvent> eventBetween(RegionSide before, RegionSide now,
                                               const CircularRegion& region) {
  if (before == RegionSide::outside && now == RegionSide::inside && region.notifyOnEntry) {
    return RegionEvent::entered;
  }
  if (before == RegionSide::inside && now == RegionSide::outside && region.notifyOnExit) {
    return RegionEvent::left;
  }
  return std::nullopt;
}

}  // namespace ovinta::platform::portable
