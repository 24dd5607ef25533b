#pragma once

#include <memory>

#include "platform/OperationQueue.h"
#include "platform/SettingsStore.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta::platform::linux {

/// Keeps requests pending, across restarts, until they are removed. None ever fires: that takes
/// location services, which this platform does not have.
class StoredUserNotificationCenter : public UserNotificationCenter {
 public:
  /// `store` keeps the requests and is nobody else's.
  StoredUserNotificationCenter(OperationQueueFactory& queues, std::shared_ptr<SettingsStore> store);

  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override;
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override;
  void add(UserNotificationRequest request,
           std::function<void(std::optional<UserNotificationError>)> completion) override;

 private:
  void enqueue(std::function<void(SettingsStore&)> step);

  /// Read and written on the queue only, which runs one step at a time.
  std::shared_ptr<SettingsStore> store_;
  std::shared_ptr<OperationQueue> queue_;
};

}  // namespace ovinta::platform::linux
