#include "platform/standard/RegionSide.h"

namespace ovinta::platform::standard {

RegionSide sideOf(const CircularRegion& region, const Location& fix, const Geodesy& geodesy) {
  if (!(fix.horizontalAccuracy >= 0)) return RegionSide::unknown;
  const double distance = geodesy.distance(region.center, fix.coordinate);
  if (distance + fix.horizontalAccuracy <= region.radius) return RegionSide::inside;
  if (distance - fix.horizontalAccuracy > region.radius) return RegionSide::outside;
  return RegionSide::unknown;
}

std::optional<RegionEvent> eventBetween(RegionSide before, RegionSide now,
                                        const CircularRegion& region) {
  if (before == RegionSide::outside && now == RegionSide::inside && region.notifyOnEntry) {
    return RegionEvent::entered;
  }
  if (before == RegionSide::inside && now == RegionSide::outside && region.notifyOnExit) {
    return RegionEvent::left;
  }
  return std::nullopt;
}

}  // namespace ovinta::platform::standard
