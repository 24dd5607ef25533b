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

  /// `points` must not be empty; any order.
  TripPath(std::vector<TripPoint> points, const Geodesy& geodesy);

  /// Before the first point the state at it, after the last the one there, standing still.
  State at(TimeInterval offset) const;

  TimeInterval duration() const { return points_.back().offset; }

 private:
  std::vector<TripPoint> points_;
  /// Metres from the first point to each.
  std::vector<double> along_;
};

}  // namespace ovinta::platform::simulation
