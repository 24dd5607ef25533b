#pragma once

#include <cstdint>
#include <random>

#include "platform/Location.h"

namespace ovinta::platform::simulation {

/// Normally distributed numbers of mean 0 and deviation 1, the same for a seed with every standard
/// library.
class GaussianNoise {
 public:
  explicit GaussianNoise(std::uint64_t seed) : engine_(seed) {}
  double next();

 private:
  std::mt19937_64 engine_;
};

/// The wandering error of a receiver's positions, which changes little from one second to the next
/// (a first-order Gauss-Markov process).
class PositionNoise {
 public:
  /// The position one second later than the last, as received when two of three lie within
  /// `accuracy` metres.
  Coordinate apply(Coordinate position, double accuracy, GaussianNoise& noise);

 private:
  /// The present error of the position, in units of the deviation along one axis.
  double north_ = 0;
  double east_ = 0;
  bool isFirst_ = true;
};

}  // namespace ovinta::platform::simulation
