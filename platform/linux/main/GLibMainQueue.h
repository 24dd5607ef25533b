#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/MainQueue.h"

namespace ovinta::platform::linuxos {

/// Fixes the process's initial thread as the main thread, unless one was fixed before.
void rememberMainThread();

/// The main queue as one source of the GLib main context of the default. It holds the tasks itself:
/// GLib alone would run sources that are due together in the order in which they were attached.
/// One task is run per turn of the loop, so that other sources get theirs. Tasks that are still
/// waiting when the queue is destroyed are dropped, save those that a thread waits for in `sync`:
/// the loop runs them all the same.
class GLibMainQueue : public MainQueue {
 public:
  /// Microseconds of a clock that never goes back.
  using Now = std::function<std::int64_t()>;

  /// `now` decides which tasks are due; by default it is the clock of the main loop itself.
  explicit GLibMainQueue(Now now = {});
  ~GLibMainQueue() override;

  bool isMain() const override;
  void async(Task task) override;
  void asyncAfter(TimeInterval delay, Task task) override;
  void sync(Task task) override;

 private:
  class Source;
  std::shared_ptr<Source> source_;
};

}  // namespace ovinta::platform::linuxos
