#include <cmath>

#include "fuzz/Target.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/trip/TripPath.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;
using simulation::Trip;

bool isOnEarth(Coordinate place) {
  return std::abs(place.latitude) <= 90 && std::abs(place.longitude) <= 180;
}

void follow(const Trip& trip) {
  static const auto geodesy = linuxos::makeValueServices().geodesy;
  const simulation::TripPath path(trip.points, *geodesy);
  double last = 0;
  for (int step = -1; step <= 5; ++step) {
    const auto state = path.at(path.duration() / 4 * step);
    require(isOnEarth(state.coordinate), "every place of the way is on Earth");
    require(state.speed >= 0 && state.accuracy >= 0, "speed and accuracy are never below zero");
    require(state.distanceAlong >= last - 1e-3, "the way only grows");
    last = state.distanceAlong;
  }
}

void run(std::string_view input) {
  const auto reading = Trip::fromGPXText(input);
  if (const auto* error = std::get_if<std::string>(&reading)) {
    require(!error->empty(), "a refusal says why");
    return;
  }
  const auto& trip = std::get<Trip>(reading);
  require(!trip.points.empty(), "a trip has a point");
  TimeInterval last{};
  for (const auto& point : trip.points) {
    require(point.offset >= last, "points come in the order of their time");
    require(isOnEarth(point.coordinate), "every point is on Earth");
    last = point.offset;
  }
  follow(trip);
}

const Target kTarget("gpx", run);

}  // namespace
}  // namespace ovinta::fuzz
