#pragma once

#include <chrono>

namespace ovinta::platform::portable {

/// How long the end of the process waits for what is under way on other threads.
inline constexpr std::chrono::seconds kPatienceAtExit(2);

/// What operations of all queues pass through, so that none runs any more when the process's exit
/// handlers take away what it stands on. May be used from any thread.
class ExitGate {
 public:
  /// Adds, at the first call, the exit handler that closes the gate and waits until all have left,
  /// though not longer than `kPatienceAtExit` and not for an operation that calls `exit` itself.
  /// Handlers run in the reverse order: what was made before this call outlives the wait.
  static void watch();

  /// Lets the calling thread begin an operation; false when the process exits, so that it must not.
  static bool enter();

  /// To be called on the same thread when the operation has ended.
  static void leave();
};

}  // namespace ovinta::platform::portable
