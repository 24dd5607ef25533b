#pragma once

#include "Date.h"

namespace ovinta::platform {

/// A point on the WGS84 ellipsoid. A plain value.
struct Coordinate {
  /// Degrees, north and east positive; the range is not checked.
  double latitude = 0;
  double longitude = 0;

  friend bool operator==(const Coordinate&, const Coordinate&) = default;
};

/// A position fix. A plain value.
struct Location {
  /// Where the device is.
  Coordinate coordinate;
  /// Radius of uncertainty in metres; negative when the coordinate is not valid.
  double horizontalAccuracy = 0;
  /// Metres per second; negative when unknown.
  double speed = -1;
  /// When the position was determined.
  Date timestamp = kDistantPast;

  friend bool operator==(const Location&, const Location&) = default;
};

/// Measures on the Earth. May be used from any thread.
class Geodesy {
 public:
  virtual ~Geodesy() = default;

  /// Length in metres of the geodesic between two points on the WGS84 ellipsoid; not a number when
  /// a latitude is out of range.
  virtual double distance(Coordinate from, Coordinate to) const = 0;
};

}  // namespace ovinta::platform
