#include "platform/simulation/trip/Noise.h"

#include <cmath>
#include <numbers>

namespace ovinta::platform::simulation {
namespace {

/// The time, in seconds, after which an error is mostly forgotten.
constexpr double kCorrelationTime = 60;
/// The radius within which two of three positions lie when their deviation is 1 along each axis:
/// the quantile of the Rayleigh distribution, sqrt(2 ln 3).
constexpr double kRadiusOfTwoThirds = 1.48;
constexpr double kMetresPerDegree = 111'195;

}  // namespace

double GaussianNoise::next() {
  // The Box-Muller transform of two numbers with 53 random bits, the first never 0.
  const auto uniform = [this] { return static_cast<double>(engine_() >> 11) * 0x1p-53; };
  const double radius = std::sqrt(-2 * std::log(1 - uniform()));
  return radius * std::cos(2 * std::numbers::pi * uniform());
}

Coordinate PositionNoise::apply(Coordinate position, double accuracy, GaussianNoise& noise) {
  const double kept = isFirst_ ? 0 : std::exp(-1 / kCorrelationTime);
  const double fresh = std::sqrt(1 - kept * kept);
  isFirst_ = false;
  north_ = kept * north_ + fresh * noise.next();
  east_ = kept * east_ + fresh * noise.next();
  const double degrees = accuracy / kRadiusOfTwoThirds / kMetresPerDegree;
  const double narrowing = std::cos(position.latitude * std::numbers::pi / 180);
  return {position.latitude + degrees * north_,
          position.longitude + degrees * east_ / std::max(narrowing, 1e-3)};
}

}  // namespace ovinta::platform::simulation
