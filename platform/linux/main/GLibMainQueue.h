#pragma once

#include <functional>
#include <memory>

#include "platform/MainQueue.h"
#include "platform/linux/main/MainTasks.h"

namespace ovinta::platform::linuxos {

/// The main queue as one source of the GLib main context of the default, which `runMainTasks`
/// serves as well. Tasks that are still waiting when the queue is destroyed are dropped, save those
/// that a thread waits for in `sync`: they are run all the same.
class GLibMainQueue : public MainQueue {
 public:
  using Options = MainTasks::Options;

  explicit GLibMainQueue(Options options = {}) : tasks_(MainTasks::make(std::move(options))) {}
  ~GLibMainQueue() override { tasks_->close(); }

  bool isMain() const override;
  void async(Task task) override;
  void asyncAfter(TimeInterval delay, Task task) override;
  void sync(Task task) override;

  /// `MainTasks::lookAfterTasks` as a function that outlives the queue.
  std::function<TimeInterval()> watch() const;

 private:
  const std::shared_ptr<MainTasks> tasks_;
};

}  // namespace ovinta::platform::linuxos
