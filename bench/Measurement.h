#pragma once

#include <optional>

#include "bench/Row.h"

namespace ovinta::bench {

/// How long is measured: each benchmark so often, and each time for so many seconds at least.
struct Effort {
  int repetitions;
  double seconds;
};

/// What a row takes: medians, in nanoseconds or in the unit of its figure.
struct Measurement {
  std::optional<double> floor;
  double ours;

  /// What the row's aim is about: the multiple of the floor or, without one, the figure itself.
  double judged() const { return floor ? ours / *floor : ours; }
};

/// Measures a row, floor and ours in turns. Absent when one of them could not do its work.
std::optional<Measurement> measure(const Row& row, const Effort& effort);

}  // namespace ovinta::bench
