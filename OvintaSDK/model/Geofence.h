#pragma once

#include <string>

namespace ovinta {

/// A circle round a site.
struct Geofence {
  /// Degrees as decimal text, as `longitude`.
  std::string latitude;
  std::string longitude;
  double radiusMeters = 0;

  friend bool operator==(const Geofence&, const Geofence&) = default;
};

}  // namespace ovinta
