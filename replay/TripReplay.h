#pragma once

#include <chrono>
#include <optional>

#include "platform/Location.h"
#include "platform/simulation/trip/TripPath.h"

namespace ovinta::replay {

/// A trip as a receiver tells of it while it is made: a position every second of the caller's
/// clock, without noise, and after the end the last one at rest for ever. What else a trip may hold
/// does not reach a receiver. For one thread.
class TripReplay {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// `pace` is how long the trip takes on that clock, and speeds are as fast as it makes them;
  /// zero: it is over at once. The trip must hold at least one point.
  TripReplay(const platform::simulation::Trip& trip, std::chrono::duration<double> pace,
             const platform::Geodesy& geodesy);

  /// The position to tell of now, its timestamp left open; absent when the last one still stands.
  /// The trip begins with the first call. `now` never goes back.
  std::optional<platform::Location> next(Time now);

 private:
  platform::Location at(std::chrono::duration<double> elapsed) const;

  const platform::simulation::TripPath path_;
  const std::chrono::duration<double> pace_;
  std::optional<Time> begin_;
  Time due_;
};

}  // namespace ovinta::replay
