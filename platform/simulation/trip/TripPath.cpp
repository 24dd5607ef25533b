#include "platform/simulation/trip/TripPath.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ovinta::platform::simulation {
namespace {

/// The difference of two longitudes the short way round.
double eastward(double from, double to) { return std::remainder(to - from, 360.0); }

}  // namespace

TripPath::TripPath(std::vector<TripPoint> points, const Geodesy& geodesy)
    : points_(std::move(points)) {
  std::ranges::stable_sort(points_, {}, &TripPoint::offset);
  double length = 0;
  for (std::size_t i = 0; i < points_.size(); ++i) {
    if (i > 0) length += geodesy.distance(points_[i - 1].coordinate, points_[i].coordinate);
    along_.push_back(length);
  }
}

TripPath::State TripPath::at(TimeInterval offset) const {
  const auto after = std::ranges::upper_bound(points_, offset, {}, &TripPoint::offset);
  if (after == points_.end()) {
    const auto& last = points_.back();
    return {last.coordinate, std::max(last.speed, 0.0), last.accuracy, along_.back()};
  }
  const auto next = static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - points_.begin(), 1));
  if (next >= points_.size()) return at(points_.back().offset);
  const auto& a = points_[next - 1];
  const auto& b = points_[next];
  const double seconds = std::chrono::duration<double>(b.offset - a.offset).count();
  const double passed =
      std::chrono::duration<double>(std::max(offset, a.offset) - a.offset).count();
  const double part = seconds > 0 ? passed / seconds : 0;
  const auto between = [part](double from, double to) { return from + part * (to - from); };

  State state;
  state.coordinate = {
      between(a.coordinate.latitude, b.coordinate.latitude),
      std::remainder(
          a.coordinate.longitude + part * eastward(a.coordinate.longitude, b.coordinate.longitude),
          360.0)};
  state.accuracy = between(a.accuracy, b.accuracy);
  state.distanceAlong = between(along_[next - 1], along_[next]);
  const double pace = seconds > 0 ? (along_[next] - along_[next - 1]) / seconds : 0;
  state.speed = a.speed >= 0 && b.speed >= 0 ? between(a.speed, b.speed) : pace;
  return state;
}

}  // namespace ovinta::platform::simulation
