#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "platform/Log.h"
#include "platform/OperationQueue.h"
#include "platform/linux/notifications/NotificationStore.h"

namespace ovinta::platform::linuxos {

/// A store and the background queue on which alone it is used. May be used from any thread.
class NotificationStoreQueue {
 public:
  using Step = std::function<void(NotificationStore&)>;

  NotificationStoreQueue(OperationQueueFactory& queues, std::optional<std::filesystem::path> file,
                         std::shared_ptr<Log> log);

  /// Runs the steps one at a time in the order of the calls. What a step throws is logged.
  void enqueue(Step step);

 private:
  const std::shared_ptr<Log> log_;
  const std::shared_ptr<NotificationStore> store_;
  const std::shared_ptr<OperationQueue> queue_;
};

}  // namespace ovinta::platform::linuxos
