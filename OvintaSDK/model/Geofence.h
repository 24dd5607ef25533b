#pragma once

#include <string>

namespace ovinta {

/// A circle round a site. A plain value.
struct Geofence {
  /// The centre, in degrees as decimal text; not checked.
  std::string latitude;
  std::string longitude;
  /// Metres.
  double radiusMeters = 0;

  friend bool operator==(const Geofence&, const Geofence&) = default;
};

}  // namespace ovinta
