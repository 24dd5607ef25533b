#include "platform/linux/main/GLibMainQueue.h"

#include <utility>

#include "platform/linux/main/MainThread.h"

namespace ovinta::platform::linuxos {

bool GLibMainQueue::isMain() const { return isMainThread(); }

void GLibMainQueue::async(Task task) { tasks_->add(TimeInterval::zero(), std::move(task)); }

void GLibMainQueue::asyncAfter(TimeInterval delay, Task task) {
  tasks_->add(delay, std::move(task));
}

void GLibMainQueue::sync(Task task) {
  if (isMain()) return task();
  // The tasks are kept, because the queue may be destroyed while this waits.
  const auto tasks = tasks_;
  tasks->addAndWait(task);
}

std::function<TimeInterval()> GLibMainQueue::watch() const {
  return [weak = std::weak_ptr(tasks_)] {
    const auto tasks = weak.lock();
    return tasks ? tasks->lookAfterTasks() : TimeInterval::max();
  };
}

}  // namespace ovinta::platform::linuxos
