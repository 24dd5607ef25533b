#pragma once

#include "Date.h"

namespace ovinta::platform {

/// Tells the time of day. May be used from any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The current instant; may go back when the user sets the time.
  virtual Date now() const = 0;
};

}  // namespace ovinta::platform
