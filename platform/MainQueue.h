#pragma once

#include <functional>

#include "Date.h"

namespace ovinta::platform {

/// The serial queue of the application's main thread. Tasks run on that thread, one at a time, each
/// exactly once, in the order of their due times and, among equal ones, of their submission. A task
/// never runs inside the call that submits it, save through `sync` on the main thread. Tasks must
/// not throw. All methods may be called from any thread.
class MainQueue {
 public:
  /// What runs on the main thread; never empty.
  using Task = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Whether the calling thread is the main thread.
  virtual bool isMain() const = 0;

  /// Queues `task`.
  virtual void async(Task task) = 0;

  /// Queues `task` to run once `delay` has passed; a delay below zero counts as zero.
  virtual void asyncAfter(TimeInterval delay, Task task) = 0;

  /// Runs `task` on the main thread and returns when it has ended: at once when called on the main
  /// thread, otherwise through the queue. Blocks for ever if nobody runs the main loop.
  virtual void sync(Task task) = 0;
};

}  // namespace ovinta::platform
