#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "platform/Date.h"

namespace ovinta::platform::portable {

/// The time since some instant, which never goes back.
using Uptime = TimeInterval;

/// A time between none and the whole of the window, by a random number of 64 bits.
constexpr TimeInterval jitter(std::uint64_t random, TimeInterval window) {
  constexpr double kWhole = 9'007'199'254'740'992.0;  // 2 to the power of 53
  const double part = static_cast<double>(random >> 11U) / kWhole;
  return TimeInterval(static_cast<TimeInterval::rep>(static_cast<double>(window.count()) * part));
}

/// The window in which a try falls after so many failures in a row, the first of which is 1.
constexpr TimeInterval retryWindow(int failures) {
  constexpr TimeInterval kFirst = std::chrono::seconds(10);
  constexpr TimeInterval kLongest = std::chrono::minutes(30);
  TimeInterval window = kFirst;
  for (int i = 1; i < failures && window < kLongest; ++i) window *= 3;
  return std::min(window, kLongest);
}

/// Says when it is worth while to try the service again: one gate for all requests, because an
/// outage is the same for all. After each try in vain it opens at a random instant of a window that
/// grows.
class RetryGate {
 public:
  /// The window of the first try once the network is there again.
  static constexpr TimeInterval kReturnWindow = std::chrono::seconds(5);
  /// How long nothing must have been tried before the application's own doings are an occasion.
  static constexpr TimeInterval kOccasion = std::chrono::minutes(1);

  bool isOpen(Uptime now) const { return now >= next_; }
  /// Whether the last try was in vain: then one more is enough to find out.
  bool isDoubtful() const { return failures_ > 0; }
  Uptime next() const { return next_; }

  void succeed() {
    failures_ = 0;
    next_ = {};
  }
  /// Those that were under way together fail together, which counts once.
  void fail(Uptime now, std::uint64_t random) {
    if (failures_ > 0 && now < next_) return;
    ++failures_;
    lastTry_ = now;
    next_ = now + jitter(random, retryWindow(failures_));
  }
  /// There is a reason to hope for the service, such as a network that is new: what was in vain
  /// before says nothing of it.
  void hope(Uptime now, std::uint64_t random) {
    failures_ = 1;
    next_ = now + jitter(random, kReturnWindow);
  }
  /// Opens the gate for one try, unless there was one a short while ago.
  void takeOccasion(Uptime now) {
    if (now >= lastTry_ + kOccasion) next_ = std::min(next_, now);
  }

 private:
  int failures_ = 0;
  Uptime next_{};
  Uptime lastTry_{};
};

}  // namespace ovinta::platform::portable
