#pragma once

#include <glib.h>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/portable/ExitAwareThread.h"

namespace ovinta::platform::linuxos::dbus {

/// A thread with a GLib context of its own, where tasks and the context's sources run. It starts
/// with the first task and sleeps while there is nothing to do.
class ContextThread {
 public:
  using Task = std::function<void()>;

  /// `end` runs on the thread, after the last task; sources that are ready then are still served.
  ContextThread(const char* name, Task end);

  ContextThread(const ContextThread&) = delete;
  ContextThread& operator=(const ContextThread&) = delete;

  /// Drops the tasks that wait, and waits for the thread's end, as the destructor does. Must not be
  /// called on the thread itself.
  void stop() { thread_.stop(); }

  /// Queues a task, to run in the order of the calls. May be called from any thread.
  void post(Task task);

 private:
  void run();
  void runTasks();

  /// The context outlives the thread, whose owner wakes it until the very last.
  const std::unique_ptr<GMainContext, void (*)(GMainContext*)> context_;
  const Task end_;
  std::mutex mutex_;
  std::vector<Task> tasks_;
  portable::ExitAwareThread thread_;
};

}  // namespace ovinta::platform::linuxos::dbus
