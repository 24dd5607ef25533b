#include "platform/linux/main/GLibMainQueue.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <future>
#include <limits>
#include <map>
#include <mutex>
#include <utility>

#include "platform/FatalError.h"
#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {
namespace {

/// The main thread's id; 0 until it is fixed. Asking GLib would not do: outside an iteration no
/// thread owns the context.
std::atomic<pid_t> fixedMainThread{0};

/// Fixes the candidate as the main thread, unless one was fixed before; the one that is.
pid_t fixMainThread(pid_t candidate) {
  pid_t fixed = 0;
  return fixedMainThread.compare_exchange_strong(fixed, candidate) ? candidate : fixed;
}

/// The fixed one, or the process's initial thread.
pid_t mainThread() {
  const pid_t fixed = fixedMainThread;
  return fixed ? fixed : ::getpid();
}

std::atomic<bool> quitRequested{false};

}  // namespace

void rememberMainThread() { fixMainThread(::getpid()); }

/// The waiting tasks and the GLib source that runs them.
class GLibMainQueue::Source : public std::enable_shared_from_this<Source> {
 public:
  explicit Source(Now now) : now_(now ? std::move(now) : Now(&g_get_monotonic_time)) {}

  void add(TimeInterval delay, Task task, bool isAwaited = false) {
    const std::lock_guard lock(mutex_);
    const std::int64_t now = now_();
    const auto wait =
        std::clamp<std::int64_t>(delay.count(), 0, std::numeric_limits<std::int64_t>::max() - now);
    tasks_.emplace(now + wait, Waiting{std::move(task), isAwaited});
    if (!source_) attach();
    arm();
  }

  /// Ends the source when the queue is gone: drops the tasks for which nobody waits, and detaches
  /// once there is none.
  void close() {
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

 private:
  struct Waiting {
    Task task;
    /// Whether a thread stands still until it has run.
    bool isAwaited;
  };
  using Tasks = std::multimap<std::int64_t, Waiting>;

  /// No exception may cross the frames of GLib, which called this: one ends the process here.
  void runNext() noexcept {
    Task task;
    {
      const std::lock_guard lock(mutex_);
      const auto first = tasks_.begin();
      if (first == tasks_.end() || first->first > now_()) return arm();
      task = std::move(first->second.task);
      tasks_.erase(first);
      arm();
    }
    task();
    detachWhenOver();
  }

  /// Attaches a new source; GLib keeps this object until it is detached. Call with the lock held.
  void attach() {
    static GSourceFuncs functions = [] {
      GSourceFuncs table{};
      table.dispatch = [](GSource*, GSourceFunc callback, gpointer data) { return callback(data); };
      return table;
    }();
    source_ = g_source_new(&functions, sizeof(GSource));
    g_source_set_callback(
        source_,
        [](gpointer data) -> gboolean {
          static_cast<std::shared_ptr<Source>*>(data)->get()->runNext();
          return G_SOURCE_CONTINUE;
        },
        new std::shared_ptr<Source>(shared_from_this()),
        [](gpointer data) { delete static_cast<std::shared_ptr<Source>*>(data); });
    g_source_set_priority(source_, G_PRIORITY_DEFAULT);
    g_source_attach(source_, nullptr);
  }

  /// Detaches a source without tasks whose queue is gone; a thread that comes to wait later
  /// attaches it anew.
  void detachWhenOver() {
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

  /// Sets the time at which the loop is to run the next task. Call with the lock held.
  void arm() {
    if (!source_) return;
    if (tasks_.empty()) return g_source_set_ready_time(source_, -1);
    // The time is given by the loop's own clock, which need not be the queue's.
    const std::int64_t wait = tasks_.begin()->first - now_();
    const std::int64_t loopNow = g_get_monotonic_time();
    const std::int64_t most = std::numeric_limits<std::int64_t>::max() - loopNow;
    g_source_set_ready_time(source_, loopNow + std::clamp<std::int64_t>(wait, 0, most));
  }

  const Now now_;
  std::mutex mutex_;
  /// The tasks that wait, by due time; those due together in the order of submission.
  Tasks tasks_;
  bool isClosed_ = false;
  /// GLib's source; null while none is attached.
  GSource* source_ = nullptr;
};

GLibMainQueue::GLibMainQueue(Now now) : source_(std::make_shared<Source>(std::move(now))) {}

GLibMainQueue::~GLibMainQueue() { source_->close(); }

bool GLibMainQueue::isMain() const { return ::gettid() == mainThread(); }

void GLibMainQueue::async(Task task) { source_->add(TimeInterval::zero(), std::move(task)); }

void GLibMainQueue::asyncAfter(TimeInterval delay, Task task) {
  source_->add(delay, std::move(task));
}

void GLibMainQueue::sync(Task task) {
  if (isMain()) return task();
  // The source is kept, because the queue may be destroyed while this waits.
  const auto source = source_;
  auto ended = std::make_shared<std::promise<void>>();
  const auto end = ended->get_future();
  source->add(
      TimeInterval::zero(),
      [&task, ended = std::move(ended)] {
        task();
        ended->set_value();
      },
      true);
  end.wait();
}

void runMainLoop() {
  const pid_t caller = ::gettid();
  if (fixMainThread(caller) != caller) fatalError("The main loop must run on the main thread");
  while (!quitRequested.exchange(false)) g_main_context_iteration(nullptr, TRUE);
}

void quitMainLoop() {
  quitRequested = true;
  g_main_context_wakeup(nullptr);
}

}  // namespace ovinta::platform::linuxos
