#pragma once

#include <optional>

#include "platform/Location.h"
#include "platform/Region.h"

namespace ovinta::platform::standard {

/// The distance filter for positions that regions are judged by: fine enough for the surroundings
/// of a store, and nothing for a device that lies still.
inline constexpr double kRegionFilterMetres = 10;

enum class RegionSide { unknown, inside, outside };
enum class RegionEvent { entered, left };

/// The side of the border on which the whole circle of a fix's uncertainty lies; unknown when the
/// border runs through it. May be called from any thread.
RegionSide sideOf(const CircularRegion& region, const Location& fix, const Geodesy& geodesy);

/// What a fix that lies on `now` means after one on `before`: nothing while either is unknown, and
/// nothing that the region does not want to be told.
std::optional<RegionEvent> eventBetween(RegionSide before, RegionSide now,
                                        const CircularRegion& region);

}  // namespace ovinta::platform::standard
