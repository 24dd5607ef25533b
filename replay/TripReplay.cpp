#include "replay/TripReplay.h"

namespace ovinta::replay {
namespace {

constexpr std::chrono::seconds kInterval{1};

}  // namespace

TripReplay::TripReplay(const platform::simulation::Trip& trip, std::chrono::duration<double> pace,
                       const platform::Geodesy& geodesy)
    : path_(trip.points, geodesy), pace_(pace) {}

std::optional<platform::Location> TripReplay::next(Time now) {
  if (!begin_) begin_ = due_ = now;
  if (now < due_) return std::nullopt;
  // What was slept through is not made up for.
  while (due_ <= now) due_ += kInterval;
  return at(now - *begin_);
}

platform::Location TripReplay::at(std::chrono::duration<double> elapsed) const {
  const bool isOver = elapsed >= pace_;
  const double factor = isOver ? 0 : path_.duration() / pace_;
  const auto state =
      path_.at(isOver ? path_.duration()
                      : std::chrono::duration_cast<platform::TimeInterval>(elapsed * factor));
  return {.coordinate = state.coordinate,
          .horizontalAccuracy = state.accuracy,
          .speed = state.speed * factor};
}

}  // namespace ovinta::replay
