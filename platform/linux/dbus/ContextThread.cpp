#include "platform/linux/dbus/ContextThread.h"

#include <utility>

namespace ovinta::platform::linuxos::dbus {

ContextThread::ContextThread(const char* name, Task end)
    : context_(g_main_context_new(), &g_main_context_unref),
      end_(std::move(end)),
      thread_(
          name, [this] { run(); }, [this] { g_main_context_wakeup(context_.get()); }) {}

void ContextThread::post(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  thread_.startOnce();
  g_main_context_wakeup(context_.get());
}

void ContextThread::run() {
  g_main_context_push_thread_default(context_.get());
  while (!thread_.stopping()) {
    runTasks();
    // A task that is posted after this line has woken the context, which then does not sleep.
    g_main_context_iteration(context_.get(), TRUE);
  }
  end_();
  while (g_main_context_iteration(context_.get(), FALSE)) {
  }
  g_main_context_pop_thread_default(context_.get());
}

void ContextThread::runTasks() {
  std::vector<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
  }
  for (const Task& task : tasks) task();
}

}  // namespace ovinta::platform::linuxos::dbus
