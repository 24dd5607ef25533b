#pragma once

#include <functional>
#include <memory>

namespace ovinta::platform::simulation {

class VirtualTimeState;

/// Keeps virtual time from moving for as long as it lives. Made by `VirtualTime::hold`; may be used
/// and destroyed on any thread, also after the `VirtualTime`.
class TimeHold {
 public:
  /// For the use of `VirtualTime`.
  explicit TimeHold(std::shared_ptr<VirtualTimeState> state);
  TimeHold(const TimeHold&) = delete;
  TimeHold& operator=(const TimeHold&) = delete;
  ~TimeHold();

  /// Runs `work` on the calling thread, in turn with the main thread: it begins when the main
  /// thread waits inside `advance` or `waitUntil` with no task due, and until it ends neither tasks
  /// nor the work of another hold run (tasks do run while `work` waits in `MainQueue::sync`, but
  /// `work` must not wait for other work). So what threads do comes in the same order every time.
  /// On the main thread, inside other such work, and once the `VirtualTime` is gone, `work` runs at
  /// once.
  void runInTurn(const std::function<void()>& work);

 private:
  std::shared_ptr<VirtualTimeState> state_;
};

}  // namespace ovinta::platform::simulation
