#include "platform/simulation/time/VirtualTimeState.h"

#include <algorithm>
#include <functional>
#include <memory>

#include "platform/FatalError.h"

namespace ovinta::platform::simulation {
namespace {

using WallClock = std::chrono::steady_clock;

/// How often a condition is looked at when nothing else happens.
constexpr std::chrono::milliseconds kLookInterval{5};

Date later(Date date, TimeInterval interval) {
  interval = std::max(interval, TimeInterval::zero());
  return interval > Date::max() - date ? Date::max() : date + interval;
}

}  // namespace

/// Marks, while it lives, that the main thread runs tasks.
class VirtualTimeState::Drive {
 public:
  explicit Drive(VirtualTimeState& state) : state_(state) {
    if (!state.isMain()) fatalError("Virtual time is driven by the main thread only");
    if (state.driving_) fatalError("Virtual time cannot be driven from inside a task");
    state.driving_ = true;
  }
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;
  ~Drive() { state_.driving_ = false; }

 private:
  VirtualTimeState& state_;
};

Date VirtualTimeState::now() const {
  const std::lock_guard lock(mutex_);
  return now_;
}

std::size_t VirtualTimeState::pendingTaskCount() const {
  const std::lock_guard lock(mutex_);
  return tasks_.size();
}

void VirtualTimeState::submit(TimeInterval delay, Task task) {
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return;
    tasks_.emplace(Order{later(now_, delay), submitted_++}, std::move(task));
  }
  changed_.notify_all();
}

void VirtualTimeState::submitAndWait(Task task) {
  const auto done = std::make_shared<bool>(false);
  submit(TimeInterval::zero(), [this, done, work = std::move(task)] {
    work();
    const std::lock_guard lock(mutex_);
    *done = true;
    changed_.notify_all();
  });
  Lock lock(mutex_);
  const bool blocksTurn = isInTurn();
  if (blocksTurn) {
    turnBlocked_ = true;
    changed_.notify_all();
  }
  changed_.wait(lock, [&] { return *done; });
  if (blocksTurn) turnBlocked_ = false;
}

void VirtualTimeState::addHold() {
  const std::lock_guard lock(mutex_);
  ++holds_;
}

void VirtualTimeState::releaseHold() {
  const std::lock_guard lock(mutex_);
  if (--holds_ == 0) mainWaits_ = false;
  changed_.notify_all();
}

void VirtualTimeState::runInTurn(const std::function<void()>& work) {
  bool takesTurn = false;
  {
    Lock lock(mutex_);
    if (!isMain() && !isInTurn()) {
      changed_.wait(lock,
                    [this] { return closed_ || (mainWaits_ && !turnTaken_ && !isTaskDue()); });
      takesTurn = !closed_;
    }
    if (takesTurn) {
      turnTaken_ = true;
      turnThread_ = std::this_thread::get_id();
    }
  }
  work();
  if (!takesTurn) return;
  const std::lock_guard lock(mutex_);
  turnTaken_ = false;
  mainWaits_ = false;
  changed_.notify_all();
}

bool VirtualTimeState::runDueTask(Lock& lock) {
  if (!mayRunTask()) return false;
  auto entry = tasks_.extract(tasks_.begin());
  lock.unlock();
  entry.mapped()();
  entry = {};
  lock.lock();
  return true;
}

void VirtualTimeState::letOthersWork(Lock& lock, WallClock::time_point limit) {
  mainWaits_ = true;
  changed_.notify_all();
  const auto look = [this] { return mayRunTask() || (!turnTaken_ && !mainWaits_); };
  if (limit == WallClock::time_point::max()) {
    changed_.wait(lock, look);
  } else {
    changed_.wait_until(lock, limit, look);
  }
  mainWaits_ = false;
}

bool VirtualTimeState::holds(Lock& lock, const std::function<bool()>& condition) {
  if (turnTaken_) return false;
  lock.unlock();
  const bool holds = condition();
  lock.lock();
  return holds;
}

void VirtualTimeState::advance(TimeInterval interval, const std::function<bool()>& abandon) {
  Lock lock(mutex_);
  const Drive drive(*this);
  const auto target = later(now_, interval);
  while (true) {
    if (runDueTask(lock)) continue;
    if (holds_ > 0 || turnTaken_) {
      if (abandon && holds(lock, abandon)) return;
      letOthersWork(lock,
                    abandon ? WallClock::now() + kLookInterval : WallClock::time_point::max());
      continue;
    }
    if (tasks_.empty() || tasks_.begin()->first.first > target) break;
    now_ = tasks_.begin()->first.first;
  }
  now_ = target;
}

void VirtualTimeState::runUntilIdle() {
  Lock lock(mutex_);
  const Drive drive(*this);
  while (true) {
    changed_.wait(lock, [this] { return !turnTaken_ || mayRunTask(); });
    if (!runDueTask(lock)) return;
  }
}

bool VirtualTimeState::waitUntil(const std::function<bool()>& condition,
                                 std::chrono::milliseconds wallLimit) {
  const auto deadline = WallClock::now() + wallLimit;
  Lock lock(mutex_);
  const Drive drive(*this);
  while (true) {
    while (runDueTask(lock)) {
      if (WallClock::now() >= deadline) break;
    }
    if (holds(lock, condition)) return true;
    const auto wallNow = WallClock::now();
    if (wallNow >= deadline) return false;
    letOthersWork(lock, std::min(deadline, wallNow + kLookInterval));
  }
}

void VirtualTimeState::close() {
  std::map<Order, Task> dropped;
  const std::lock_guard lock(mutex_);
  closed_ = true;
  dropped.swap(tasks_);
  changed_.notify_all();
}

}  // namespace ovinta::platform::simulation
