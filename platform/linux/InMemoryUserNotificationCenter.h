#pragma once

#include <memory>

#include "platform/OperationQueue.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta::platform::linux {

/// Keeps requests pending until they are removed or the process ends. None ever fires: that takes
/// location services, which this platform does not have. The contract's promise to keep requests
/// across restarts is not met either, for nothing could come of them.
class InMemoryUserNotificationCenter : public UserNotificationCenter {
 public:
  explicit InMemoryUserNotificationCenter(OperationQueueFactory& queues);

  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override;
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override;
  void add(UserNotificationRequest request,
           std::function<void(std::optional<UserNotificationError>)> completion) override;

 private:
  using Requests = std::vector<UserNotificationRequest>;

  void enqueue(std::function<void(Requests&)> step);

  /// Touched on the queue only, which runs one step at a time.
  std::shared_ptr<Requests> pending_ = std::make_shared<Requests>();
  std::shared_ptr<OperationQueue> queue_;
};

}  // namespace ovinta::platform::linux
