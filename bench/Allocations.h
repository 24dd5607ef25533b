#pragma once

#include <cstddef>

namespace ovinta::bench {

/// What was allocated in this program with `new`, by one thread.
struct Allocations {
  std::size_t count = 0;
  std::size_t bytes = 0;

  friend Allocations operator-(Allocations one, Allocations other) {
    return {one.count - other.count, one.bytes - other.bytes};
  }
};

/// All that the calling thread has allocated so far.
Allocations allocations();

}  // namespace ovinta::bench
