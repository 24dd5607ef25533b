#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

#include "platform/OperationQueue.h"
#include "platform/URLSession.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta::cli {

/// Counts the work that the library has under way, so that a command can tell "not yet" from
/// "never". May be used from any thread.
class Activity {
 public:
  void begin();
  void end();
  bool isIdle() const;
  /// Returns once nothing is under way.
  void waitUntilIdle();

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t underWay_ = 0;
};

/// Operation queues whose operations count from their adding to the return of `main`.
std::shared_ptr<platform::OperationQueueFactory> counting(
    std::shared_ptr<platform::OperationQueueFactory> base, std::shared_ptr<Activity> activity);

/// A session whose requests count from their start to the return of their completion.
std::shared_ptr<platform::URLSession> counting(std::shared_ptr<platform::URLSession> base,
                                               std::shared_ptr<Activity> activity);

/// A centre whose calls count until what they ask for is done.
std::shared_ptr<platform::UserNotificationCenter> counting(
    std::shared_ptr<platform::UserNotificationCenter> base, std::shared_ptr<Activity> activity);

}  // namespace ovinta::cli
