#include "platform/linux/main/MainTimer.h"

#include <sys/timerfd.h>

#include <algorithm>

namespace ovinta::platform::linuxos {

MainTimer& MainTimer::shared() {
  static auto* const instance = new MainTimer;
  return *instance;
}

std::optional<int> MainTimer::open() {
  const std::lock_guard lock(mutex_);
  if (descriptor_ < 0) descriptor_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
  return descriptor_ < 0 ? std::nullopt : std::optional(descriptor_.load());
}

void MainTimer::set(const void* owner, std::optional<std::int64_t> due) {
  if (descriptor_ < 0) return;
  const std::lock_guard lock(mutex_);
  if (due) {
    dueTimes_[owner] = *due;
  } else {
    dueTimes_.erase(owner);
  }
  if (holds_ == 0) adjust();
}

void MainTimer::hold() {
  const std::lock_guard lock(mutex_);
  if (holds_++ == 0) adjust();
}

void MainTimer::release() {
  const std::lock_guard lock(mutex_);
  if (--holds_ == 0) adjust();
}

/// Sets the system's timer. Call with the lock held.
void MainTimer::adjust() {
  if (descriptor_ < 0) return;
  itimerspec time{};
  if (holds_ == 0 && !dueTimes_.empty()) {
    const auto first = std::ranges::min_element(dueTimes_, {}, [](const auto& entry) {
                         return entry.second;
                       })->second;
    // No time at all would stop the timer; one that has passed makes it ring at once.
    const std::int64_t when = std::max<std::int64_t>(first, 1);
    time.it_value = {static_cast<time_t>(when / 1'000'000),
                     static_cast<long>(when % 1'000'000 * 1000)};
  }
  timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &time, nullptr);
}

}  // namespace ovinta::platform::linuxos
