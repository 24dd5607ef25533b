#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/MainQueue.h"

namespace ovinta::platform::simulation {

/// What a `VirtualTime`, its clock, its queue and its holds share. Their contracts stand at those
/// types.
///
/// The main thread and the work of holds take turns: `mainWaits_` says that the main thread has
/// nothing to do and waits; work begins only then, and its end clears the mark, as does the release
/// of the last hold, so that the main thread looks at what is due before the next work begins.
class VirtualTimeState {
 public:
  using Task = MainQueue::Task;

  explicit VirtualTimeState(Date start) : now_(start) {}

  bool isMain() const { return std::this_thread::get_id() == mainThread_; }
  Date now() const;
  std::size_t pendingTaskCount() const;

  void submit(TimeInterval delay, Task task);
  void submitAndWait(Task task);

  void addHold();
  void releaseHold();
  void runInTurn(const std::function<void()>& work);

  void advance(TimeInterval interval, const std::function<bool()>& abandon);
  void runUntilIdle();
  bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds wallLimit);

  /// Drops the waiting tasks and all later ones; work no longer waits for its turn.
  void close();

 private:
  using Lock = std::unique_lock<std::mutex>;
  using Order = std::pair<Date, std::uint64_t>;
  class Drive;

  bool isTaskDue() const { return !tasks_.empty() && tasks_.begin()->first.first <= now_; }
  bool mayRunTask() const { return isTaskDue() && (!turnTaken_ || turnBlocked_); }
  bool isInTurn() const { return turnTaken_ && turnThread_ == std::this_thread::get_id(); }
  bool runDueTask(Lock& lock);
  /// Whether the condition, which is looked at without the lock, holds; false while work has its
  /// turn.
  bool holds(Lock& lock, const std::function<bool()>& condition);
  /// Lets work take its turn until the main thread has something to look at, or until the limit.
  void letOthersWork(Lock& lock, std::chrono::steady_clock::time_point limit);

  const std::thread::id mainThread_ = std::this_thread::get_id();
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Date now_;
  std::uint64_t submitted_ = 0;
  std::map<Order, Task> tasks_;
  std::size_t holds_ = 0;
  bool mainWaits_ = false;
  bool turnTaken_ = false;
  /// Whether the work whose turn it is waits for a task.
  bool turnBlocked_ = false;
  std::thread::id turnThread_;
  bool driving_ = false;
  bool closed_ = false;
};

}  // namespace ovinta::platform::simulation
