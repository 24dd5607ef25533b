#pragma once

#include <chrono>

#include "platform/Clock.h"

namespace ovinta::platform::linuxos {

/// The real-time clock of the system.
class SystemClock : public Clock {
 public:
  Date now() const override {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  }
};

}  // namespace ovinta::platform::linuxos
