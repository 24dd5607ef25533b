#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/Location.h"
#include "platform/Services.h"

namespace ovinta::platform::simulation {

/// Metres per degree of latitude on the sphere.
inline constexpr double kMetresPerDegree = 111'195;

/// Measures on a sphere, near enough for tests.
class Sphere : public Geodesy {
 public:
  double distance(Coordinate from, Coordinate to) const override {
    const double north = (to.latitude - from.latitude) * kMetresPerDegree;
    const double middle = (to.latitude + from.latitude) / 2 * std::numbers::pi / 180;
    const double turn = std::remainder(to.longitude - from.longitude, 360.0);
    return std::hypot(north, turn * kMetresPerDegree * std::cos(middle));
  }
};

/// Services that a simulation on the sphere is based on.
inline Services sphericalServices() {
  Services services;
  services.geodesy = std::make_shared<Sphere>();
  return services;
}

/// Where the trips of the repository lead.
inline constexpr Coordinate kSite{40.7411, -73.9897};

inline Coordinate northOfSite(double metres) {
  return {kSite.latitude + metres / kMetresPerDegree, kSite.longitude};
}

}  // namespace ovinta::platform::simulation
