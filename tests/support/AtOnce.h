#pragma once

#include <latch>
#include <thread>

namespace ovinta::test {

/// Does both at the same time, each on a thread of its own, and returns when both are done.
template <class First, class Second>
void atOnce(First first, Second second) {
  std::latch begin(2);
  std::thread other([&] {
    begin.arrive_and_wait();
    second();
  });
  begin.arrive_and_wait();
  first();
  other.join();
}

}  // namespace ovinta::test
