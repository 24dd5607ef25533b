#include "platform/linux/GLibMainQueue.h"

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

namespace ovinta::platform::linux {
namespace {

/// The main thread, decided at the first call: the candidate, by default the process's initial
/// thread. Asking GLib would not do: outside an iteration no thread owns the context.
pid_t mainThread(pid_t candidate = ::getpid()) {
  static const pid_t id = candidate;
  return id;
}

std::atomic<bool> quitRequested{false};

}  // namespace

void rememberMainThread() { mainThread(); }

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

  /// The queue is gone: drops the tasks for which nobody waits, and detaches once there is none.
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

  /// A thread that comes to wait later attaches anew.
  void detachWhenOver() {
    GSource* over = nullptr;
    {
      const std::lock_guard lock(mutex_);
      if (isClosed_ && tasks_.empty()) over = std::exchange(source_, nullptr);
    }
    if (!over) return;
    // It may let go of this object.
    g_source_destroy(over);
    g_source_unref(over);
  }

  /// Call with the lock held.
  void arm() {
    if (!source_) return;
    if (tasks_.empty()) return g_source_set_ready_time(source_, -1);
    // The loop goes by its own clock.
    const std::int64_t wait = tasks_.begin()->first - now_();
    const std::int64_t loopNow = g_get_monotonic_time();
    const std::int64_t most = std::numeric_limits<std::int64_t>::max() - loopNow;
    g_source_set_ready_time(source_, loopNow + std::clamp<std::int64_t>(wait, 0, most));
  }

  const Now now_;
  std::mutex mutex_;
  /// By due time; equal ones in the order of submission.
  Tasks tasks_;
  bool isClosed_ = false;
  /// Null while it is not attached.
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
  // The queue may be destroyed meanwhile.
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
  if (mainThread(caller) != caller) fatalError("The main loop must run on the main thread");
  while (!quitRequested.exchange(false)) g_main_context_iteration(nullptr, TRUE);
}

void quitMainLoop() {
  quitRequested = true;
  g_main_context_wakeup(nullptr);
}

}  // namespace ovinta::platform::linux
