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
class GLibMainQueue::Source {
 public:
  /// Attaches a new source; GLib keeps the object until `detach`.
  static std::shared_ptr<Source> attach() {
    auto self = std::make_shared<Source>();
    static GSourceFuncs functions = [] {
      GSourceFuncs table{};
      table.dispatch = [](GSource*, GSourceFunc callback, gpointer data) { return callback(data); };
      return table;
    }();
    self->source_ = g_source_new(&functions, sizeof(GSource));
    g_source_set_callback(
        self->source_,
        [](gpointer data) -> gboolean {
          static_cast<std::shared_ptr<Source>*>(data)->get()->runNext();
          return G_SOURCE_CONTINUE;
        },
        new std::shared_ptr<Source>(self),
        [](gpointer data) { delete static_cast<std::shared_ptr<Source>*>(data); });
    g_source_set_priority(self->source_, G_PRIORITY_DEFAULT);
    g_source_attach(self->source_, nullptr);
    return self;
  }

  void detach() {
    g_source_destroy(source_);
    g_source_unref(source_);
  }

  void add(TimeInterval delay, Task task) {
    const std::lock_guard lock(mutex_);
    const std::int64_t now = g_get_monotonic_time();
    const auto wait =
        std::clamp<std::int64_t>(delay.count(), 0, std::numeric_limits<std::int64_t>::max() - now);
    tasks_.emplace(now + wait, std::move(task));
    arm();
  }

 private:
  /// No exception may cross the frames of GLib, which called this: one ends the process here.
  void runNext() noexcept {
    Task task;
    {
      const std::lock_guard lock(mutex_);
      const auto first = tasks_.begin();
      if (first == tasks_.end() || first->first > g_get_monotonic_time()) return arm();
      task = std::move(first->second);
      tasks_.erase(first);
      arm();
    }
    task();
  }

  /// Call with the lock held.
  void arm() { g_source_set_ready_time(source_, tasks_.empty() ? -1 : tasks_.begin()->first); }

  std::mutex mutex_;
  /// By due time, in microseconds of the monotonic clock; equal ones in the order of submission.
  std::multimap<std::int64_t, Task> tasks_;
  GSource* source_ = nullptr;
};

GLibMainQueue::GLibMainQueue() : source_(Source::attach()) {}

GLibMainQueue::~GLibMainQueue() { source_->detach(); }

bool GLibMainQueue::isMain() const { return ::gettid() == mainThread(); }

void GLibMainQueue::async(Task task) { source_->add(TimeInterval::zero(), std::move(task)); }

void GLibMainQueue::asyncAfter(TimeInterval delay, Task task) {
  source_->add(delay, std::move(task));
}

void GLibMainQueue::sync(Task task) {
  if (isMain()) return task();
  auto ended = std::make_shared<std::promise<void>>();
  const auto end = ended->get_future();
  async([&task, ended = std::move(ended)] {
    task();
    ended->set_value();
  });
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
