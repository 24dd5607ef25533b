#include "platform/linux/InMemoryUserNotificationCenter.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linux {
namespace {

class FunctionOperation : public Operation {
 public:
  explicit FunctionOperation(std::function<void()> function) : function_(std::move(function)) {}
  void main() override { function_(); }

 private:
  std::function<void()> function_;
};

}  // namespace

InMemoryUserNotificationCenter::InMemoryUserNotificationCenter(OperationQueueFactory& queues)
    : queue_(queues.makeQueue()) {
  queue_->setMaxConcurrentOperationCount(1);
}

void InMemoryUserNotificationCenter::enqueue(std::function<void(Requests&)> step) {
  queue_->addOperation(std::make_shared<FunctionOperation>(
      [pending = pending_, step = std::move(step)] { step(*pending); }));
}

void InMemoryUserNotificationCenter::getPendingNotificationRequests(
    std::function<void(std::vector<UserNotificationRequest>)> completion) {
  enqueue([completion = std::move(completion)](Requests& pending) { completion(pending); });
}

void InMemoryUserNotificationCenter::removePendingNotificationRequests(
    std::vector<std::string> identifiers) {
  enqueue([identifiers = std::move(identifiers)](Requests& pending) {
    std::erase_if(pending, [&](const UserNotificationRequest& request) {
      return std::ranges::find(identifiers, request.identifier) != identifiers.end();
    });
  });
}

void InMemoryUserNotificationCenter::add(
    UserNotificationRequest request,
    std::function<void(std::optional<UserNotificationError>)> completion) {
  enqueue([request = std::move(request), completion = std::move(completion)](Requests& pending) {
    std::erase_if(pending, [&](const UserNotificationRequest& other) {
      return other.identifier == request.identifier;
    });
    pending.push_back(request);
    if (completion) completion(std::nullopt);
  });
}

}  // namespace ovinta::platform::linux
