#pragma once

#include <vector>

#include "platform/simulation/trip/Trip.h"

namespace ovinta::platform::simulation {

/// The way of a trip as a function of time.
class TripPath {
 public:
  struct State {
    Coordinate coordinate;
    double speed = 0;
    double accuracy = 0;
    /// Metres since the trip began.
    double distanceAlong = 0;
  };

  /// `points` must not be empty, and may be in any order.
  TripPath(std::vector<TripPoint> points, const Geodesy& geodesy);

  /// Where the device is at an instant. Before the first point it is the state there, after the
  /// last one the state there, standing still.
  State at(TimeInterval offset) const;

  TimeInterval duration() const { return points_.back().offset; }

 private:
  std::vector<TripPoint> points_;
  /// The distance along the way, in metres, from the first point to each.
  std::vector<double> along_;
};

}  // namespace ovinta::platform::simulation
