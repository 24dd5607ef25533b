#include "platform/linux/main/MainTasks.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/main/MainThread.h"
#include "platform/linux/main/MainTimer.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

/// The tasks of all queues.
struct Registry {
  std::mutex mutex;
  std::vector<std::weak_ptr<MainTasks>> entries;
};

Registry& registry() {
  static auto* const instance = new Registry;
  return *instance;
}

thread_local bool isInTask = false;

/// Whether a loop inside a task met tasks that are due, which then wait for the end of that one.
std::atomic<bool> isHeldUp{false};

}  // namespace

MainTasks::MainTasks(Options options) : options_(std::move(options)) {}

MainTasks::~MainTasks() { MainTimer::shared().set(this, std::nullopt); }

std::shared_ptr<MainTasks> MainTasks::make(Options options) {
  std::shared_ptr<MainTasks> made(new MainTasks(std::move(options)));
  const std::lock_guard lock(registry().mutex);
  std::erase_if(registry().entries, [](const auto& entry) { return entry.expired(); });
  registry().entries.push_back(made);
  return made;
}

std::vector<std::shared_ptr<MainTasks>> MainTasks::all() {
  std::vector<std::shared_ptr<MainTasks>> found;
  const std::lock_guard lock(registry().mutex);
  for (const auto& entry : registry().entries) {
    if (auto tasks = entry.lock()) found.push_back(std::move(tasks));
  }
  return found;
}

bool MainTasks::isRunningOne() { return isInTask; }

void MainTasks::add(TimeInterval delay, Task task) { add(delay, std::move(task), false); }

void MainTasks::addAndWait(const Task& task) {
  auto ended = std::make_shared<std::promise<void>>();
  const auto end = ended->get_future();
  add(
      TimeInterval::zero(),
      [&task, ended = std::move(ended)] {
        task();
        ended->set_value();
      },
      true);
  if (end.wait_for(options_.patience) == std::future_status::timeout) tellOfWaiting();
  end.wait();
}

void MainTasks::add(TimeInterval delay, Task task, bool isAwaited) {
  tellOfWaiting();
  const std::lock_guard lock(mutex_);
  const std::int64_t now = options_.now();
  const auto wait = std::clamp<std::int64_t>(delay.count(), 0, kNever - now);
  tasks_.emplace(now + wait, Waiting{std::move(task), isAwaited});
  if (!source_) attach();
  arm();
}

void MainTasks::close() {
  Tasks dropped;
  {
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    std::swap(dropped, tasks_);
    for (auto next = dropped.begin(); next != dropped.end();) {
      const auto entry = next++;
      if (entry->second.isAwaited) tasks_.insert(dropped.extract(entry));
    }
    arm();
  }
  detachWhenOver();
}

/// No exception may cross the frames of GLib, which calls this: one ends the process here.
bool MainTasks::runNext() noexcept {
  Task task;
  {
    const std::lock_guard lock(mutex_);
    const auto first = tasks_.begin();
    if (first == tasks_.end() || first->first > options_.now()) {
      arm();
      return false;
    }
    task = std::move(first->second.task);
    tasks_.erase(first);
    hasRun_ = true;
    MainTimer::shared().hold();
    arm();
  }
  isInTask = true;
  task();
  isInTask = false;
  MainTimer::shared().release();
  detachWhenOver();
  if (isHeldUp.exchange(false)) {
    for (const auto& tasks : all()) tasks->setTimer();
  }
  return true;
}

bool MainTasks::isDue() {
  const std::lock_guard lock(mutex_);
  return !tasks_.empty() && tasks_.begin()->first <= options_.now();
}

void MainTasks::setTimer() {
  const std::lock_guard lock(mutex_);
  arm();
}

TimeInterval MainTasks::lookAfterTasks() {
  {
    const std::lock_guard lock(mutex_);
    if (hasRun_ || isWaitingTold_ || tasks_.empty()) return TimeInterval::max();
    const TimeInterval left(tasks_.begin()->first - options_.now());
    if (left > -options_.patience) return left + options_.patience;
  }
  tellOfWaiting();
  return TimeInterval::max();
}

/// Whether the first task waits in vain, of which nobody was told; from now on somebody is.
bool MainTasks::noteOverdue() {
  if (!options_.log) return false;
  const std::lock_guard lock(mutex_);
  if (isWaitingTold_ || tasks_.empty()) return false;
  isWaitingTold_ = options_.now() - tasks_.begin()->first >= options_.patience.count();
  return isWaitingTold_;
}

void MainTasks::tellOfWaiting() {
  if (!noteOverdue()) return;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(options_.patience);
  writeToLog("A task has waited for the main thread for " + std::to_string(seconds.count()) +
             " s and more. Position, beacons, timers and notifications come only while that runs "
             "the GLib main loop of the default context, runMainLoop or runMainTasks.");
}

void MainTasks::writeToLog(std::string_view line) {
  if (options_.log) options_.log->write(line);
}

void MainTasks::dispatch() noexcept {
  if (isInTask) return holdUp();
  if (isMainThread() || mayRunHere()) runNext();
}

/// Has a loop that runs inside a task find nothing due: tasks run one at a time.
void MainTasks::holdUp() {
  const std::lock_guard lock(mutex_);
  isHeldUp = true;
  if (source_) g_source_set_ready_time(source_, -1);
}

/// Whether another thread than the main one may run a task: if the application has said which one
/// the main thread is, two threads would run tasks at once.
bool MainTasks::mayRunHere() {
  const bool mayRun = !isMainThreadClaimed();
  bool isToBeTold = false;
  {
    const std::lock_guard lock(mutex_);
    isToBeTold = !std::exchange(isOtherThreadTold_, true);
    if (!mayRun && source_) g_source_set_ready_time(source_, -1);
  }
  if (isToBeTold) {
    writeToLog(
        std::string("Another thread than the main one runs the GLib main loop of the default "
                    "context: ") +
        (mayRun ? "it has to call claimMainThread before makeServices."
                : "the library's tasks wait for the one that was claimed."));
  }
  return mayRun;
}

/// Attaches a new source; GLib keeps this object until it is detached. Call with the lock held.
void MainTasks::attach() {
  static GSourceFuncs functions = [] {
    GSourceFuncs table{};
    table.dispatch = [](GSource*, GSourceFunc callback, gpointer data) { return callback(data); };
    return table;
  }();
  source_ = g_source_new(&functions, sizeof(GSource));
  g_source_set_callback(
      source_,
      [](gpointer data) -> gboolean {
        static_cast<std::shared_ptr<MainTasks>*>(data)->get()->dispatch();
        return G_SOURCE_CONTINUE;
      },
      new std::shared_ptr<MainTasks>(shared_from_this()),
      [](gpointer data) { delete static_cast<std::shared_ptr<MainTasks>*>(data); });
  g_source_set_priority(source_, G_PRIORITY_DEFAULT);
  g_source_attach(source_, nullptr);
}

/// Detaches a source without tasks whose queue is gone; a thread that comes to wait later attaches
/// it anew.
void MainTasks::detachWhenOver() {
  GSource* over = nullptr;
  {
    const std::lock_guard lock(mutex_);
    if (isClosed_ && tasks_.empty()) over = std::exchange(source_, nullptr);
  }
  if (!over) return;
  // GLib may let go of this object here.
  g_source_destroy(over);
  g_source_unref(over);
}

/// Sets the time at which the loop, or whoever waits for the timer, is to run the next task. Call
/// with the lock held.
void MainTasks::arm() {
  if (!source_) return;
  if (tasks_.empty()) {
    g_source_set_ready_time(source_, -1);
    return MainTimer::shared().set(this, std::nullopt);
  }
  // The time is given by the loop's own clock, which need not be the queue's.
  const std::int64_t wait = tasks_.begin()->first - options_.now();
  const std::int64_t loopNow = g_get_monotonic_time();
  const std::int64_t ready = loopNow + std::clamp<std::int64_t>(wait, 0, kNever - loopNow);
  g_source_set_ready_time(source_, ready);
  MainTimer::shared().set(this, ready);
}

}  // namespace ovinta::platform::linuxos
