#pragma once

#include <sched.h>

namespace ovinta::bench {

/// Keeps the calling thread, and those that it starts, on one of the machine's processors while
/// this lives: two threads that talk to each other cost several times as much where the system has
/// put them on different ones, which it does as it likes. Without effect where it is not allowed.
class OnProcessor {
 public:
  explicit OnProcessor(int number) {
    if (sched_getaffinity(0, sizeof before_, &before_) != 0) CPU_ZERO(&before_);
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(number, &one);
    sched_setaffinity(0, sizeof one, &one);
  }
  ~OnProcessor() { sched_setaffinity(0, sizeof before_, &before_); }
  OnProcessor(const OnProcessor&) = delete;
  OnProcessor& operator=(const OnProcessor&) = delete;

 private:
  cpu_set_t before_{};
};

}  // namespace ovinta::bench
