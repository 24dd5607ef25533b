#pragma once

#include <glib.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "platform/Log.h"
#include "platform/MainQueue.h"

namespace ovinta::platform::linuxos {

/// The waiting tasks of one main queue, and the source of the GLib main context of the default that
/// runs them. It holds the tasks itself: GLib alone would run sources that are due together in the
/// order in which they were attached. One task is run per turn of the loop, so that other sources
/// get theirs. May be used from any thread, save where a method says otherwise.
class MainTasks : public std::enable_shared_from_this<MainTasks> {
 public:
  using Task = MainQueue::Task;
  /// Microseconds of a clock that never goes back.
  using Now = std::function<std::int64_t()>;

  struct Options {
    /// Decides which tasks are due. Default: the clock of the main loop itself.
    Now now = &g_get_monotonic_time;
    /// Is told of tasks that wait in vain; null for nobody.
    std::shared_ptr<Log> log = nullptr;
    /// How long a task that is due may wait before the log is told.
    TimeInterval patience = std::chrono::seconds(5);
  };

  static std::shared_ptr<MainTasks> make(Options options);
  ~MainTasks();

  MainTasks(const MainTasks&) = delete;
  MainTasks& operator=(const MainTasks&) = delete;

  /// Those of all queues of the process, in the order of their making.
  static std::vector<std::shared_ptr<MainTasks>> all();

  /// Whether the calling thread is inside a task of any queue.
  static bool isRunningOne();

  /// Adds a task that is due after the delay. Tells the log where those before wait in vain.
  void add(TimeInterval delay, Task task);

  /// Adds the task and returns when it has been run, which it is also if the queue goes meanwhile.
  /// Not for the main thread.
  void addAndWait(const Task& task);

  /// Ends the source when the queue is gone: drops the tasks for which nobody waits, and detaches
  /// once there is none.
  void close();

  /// Runs the first task if it is due; whether it was. For the thread that serves the queue, not
  /// inside a task.
  bool runNext() noexcept;

  bool isDue();

  /// Has the timer of the process know when the next task is due.
  void setTimer();

  /// Tells the log if no task was ever run and one waits in vain. How long to sleep before it is
  /// worth to look again; max() for ever. For a thread that is there anyway.
  TimeInterval lookAfterTasks();

  /// Tells the log of the application's mistake.
  void writeToLog(std::string_view line);

 private:
  struct Waiting {
    Task task;
    /// Whether a thread stands still until it has run.
    bool isAwaited;
  };
  using Tasks = std::multimap<std::int64_t, Waiting>;

  explicit MainTasks(Options options);

  void add(TimeInterval delay, Task task, bool isAwaited);
  bool noteOverdue();
  void tellOfWaiting();
  void dispatch() noexcept;
  void holdUp();
  bool mayRunHere();
  void attach();
  void detachWhenOver();
  void arm();

  const Options options_;
  std::mutex mutex_;
  /// The tasks that wait, by due time; those due together in the order of submission.
  Tasks tasks_;
  bool isClosed_ = false;
  /// Whether any task has been run, so that somebody serves the queue.
  bool hasRun_ = false;
  /// What the log was told of.
  bool isWaitingTold_ = false, isOtherThreadTold_ = false;
  /// GLib's source; null while none is attached.
  GSource* source_ = nullptr;
};

}  // namespace ovinta::platform::linuxos
