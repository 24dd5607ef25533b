#pragma once

#include <optional>
#include <string>

#include "platform/Location.h"

namespace ovinta {

/// The location that two decimal texts in degrees stand for; absent when one is absent or is not a
/// decimal number as a whole. The range of the numbers is not checked.
std::optional<platform::Location> locationFromTexts(const std::optional<std::string>& latitude,
                                                    const std::optional<std::string>& longitude);

/// The distance in metres along the WGS84 geodesic; absent when `to` is.
std::optional<double> distanceBetween(const platform::Location& from,
                                      const std::optional<platform::Location>& to);

}  // namespace ovinta
