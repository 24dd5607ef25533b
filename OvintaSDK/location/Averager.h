#pragma once

#include <cstdint>

#include "../../platform/Export.h"

namespace ovinta {

/// A running mean that keeps no samples: the plain mean of the first ten, from then on an
/// exponential smoothing in which each new sample weighs 1/10. A plain value.
struct OVINTA_EXPORT Averager {
  /// After how many samples the smoothing begins; to change it has no effect.
  std::int64_t maxCount = 10;
  /// The number of samples folded in.
  std::int64_t count = 0;
  /// The mean, in the unit of the samples; 0 before the first.
  float value = 0;

  /// Folds one sample in. More than 2^63 - 1 samples are a fatal error.
  void add(float sample);

  friend bool operator==(const Averager&, const Averager&) = default;
};

}  // namespace ovinta
