#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

namespace ovinta::platform::linuxos {

/// The one descriptor of the process that becomes readable when a task of any main queue is due. It
/// is there once somebody has asked for it, and stays until the process ends. May be used from any
/// thread.
class MainTimer {
 public:
  static MainTimer& shared();

  /// The descriptor, opened at the first call; absent where the system gives none.
  std::optional<int> open();

  /// Notes the time, in microseconds of the monotonic clock, at which the owner has something due;
  /// absent for never. Does nothing while there is no descriptor.
  void set(const void* owner, std::optional<std::int64_t> due);

  /// Between the two the descriptor is not readable, whatever is due: a loop that runs inside a
  /// task would find it so for ever. Calls nest.
  void hold();
  void release();

 private:
  MainTimer() = default;

  void adjust();

  std::mutex mutex_;
  /// -1 until it is opened.
  std::atomic<int> descriptor_ = -1;
  std::map<const void*, std::int64_t> dueTimes_;
  /// The calls of `hold` that have not been taken back.
  int holds_ = 0;
};

}  // namespace ovinta::platform::linuxos
