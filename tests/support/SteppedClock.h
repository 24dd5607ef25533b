#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

namespace ovinta::test {

/// A time that stands still unless it is moved. May be used from any thread.
class SteppedClock {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  Instant now() {
    ++looks_;
    looks_.notify_all();
    return Instant(std::chrono::hours(1) + elapsed());
  }

  void advance(std::chrono::milliseconds by) { elapsed_ += by.count(); }

  /// How far it has been moved.
  std::chrono::milliseconds elapsed() const { return std::chrono::milliseconds(elapsed_); }

  /// Moves it, and returns when its user, told by `tell` to look at it, has done so often enough to
  /// have acted on it.
  void pass(std::chrono::milliseconds by, const std::function<void()>& tell) {
    constexpr int kEnough = 8;
    const int end = looks_ + kEnough;
    advance(by);
    for (int before = looks_; before < end; before = looks_) {
      tell();
      looks_.wait(before);
    }
  }

 private:
  std::atomic<int> looks_ = 0;
  std::atomic<std::int64_t> elapsed_ = 0;
};

}  // namespace ovinta::test
