#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/Location.h"

namespace ovinta::platform::portable {

/// The distance, in metres, between two places on a sphere of the Earth's mean radius (R1 of the
/// IUGG, 6371.0088 km), by the haversine formula: up to 0.6 % off the geodesic of WGS84.
inline double greatCircleDistance(Coordinate from, Coordinate to) {
  constexpr double kMeanRadius = 6'371'008.8;
  constexpr double kRadian = std::numbers::pi / 180;
  const double a = std::sin((to.latitude - from.latitude) * kRadian / 2);
  const double b = std::sin((to.longitude - from.longitude) * kRadian / 2);
  const double share =
      a * a + std::cos(from.latitude * kRadian) * std::cos(to.latitude * kRadian) * b * b;
  return 2 * kMeanRadius * std::asin(std::min(1.0, std::sqrt(share)));
}

}  // namespace ovinta::platform::portable
