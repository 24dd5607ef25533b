#pragma once

#include "Date.h"

namespace ovinta::platform {

/// Tells the time of day.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The current instant. May be called from any thread; may go back when the user sets the time.
  virtual Date now() const = 0;
};

}  // namespace ovinta::platform
