#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "../Simulation.h"
#include "Trip.h"

namespace ovinta::platform::simulation {

/// Takes a simulated device on a trip. Once started, and as virtual time advances, it delivers a
/// position every second, the first at once and the last where the trip ends, sets the beacons in
/// range, changes permission and battery, and goes through the tunnels. Positions carry noise
/// within their accuracy; the same trip and seed give the same ones. Destroying it ends the trip
/// where it is. Main thread only.
class TripPlayer {
 public:
  /// `simulation` must outlive the player. A trip without points is a fatal error.
  TripPlayer(Simulation& simulation, Trip trip, std::uint64_t seed);
  TripPlayer(const TripPlayer&) = delete;
  TripPlayer& operator=(const TripPlayer&) = delete;
  ~TripPlayer();

  /// Begins the trip now; does nothing once it has begun.
  void start();

  /// Whether everything has happened.
  bool isFinished() const;

  /// From the first point to the last, or to a later change of permission or battery or the end of
  /// a tunnel.
  TimeInterval duration() const;

  /// Where the device really is, as of the last delivery; absent before the first one.
  std::optional<Coordinate> position() const;

  /// Metres that it has gone so far.
  double distanceAlong() const;

 private:
  class Run;
  std::shared_ptr<Run> run_;
};

}  // namespace ovinta::platform::simulation
