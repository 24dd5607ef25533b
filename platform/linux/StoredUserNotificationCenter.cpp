#include "platform/linux/StoredUserNotificationCenter.h"

#include <algorithm>
#include <utility>

#include "platform/JSON.h"
#include "platform/linux/UserNotificationJSON.h"

namespace ovinta::platform::linux {
namespace {

using Requests = std::vector<UserNotificationRequest>;

constexpr std::string_view kPending = "Pending Notifications";

class FunctionOperation : public Operation {
 public:
  explicit FunctionOperation(std::function<void()> function) : function_(std::move(function)) {}
  void main() override { function_(); }

 private:
  std::function<void()> function_;
};

Requests load(const SettingsStore& store) {
  return notificationRequests(store.string(kPending).value_or("[]"));
}

/// The error, or absent when the requests were written.
std::optional<UserNotificationError> save(SettingsStore& store, const Requests& pending) {
  try {
    store.set(kPending, notificationRequestsText(pending));
    return std::nullopt;
  } catch (const CodingError& error) {
    return UserNotificationError{error.what()};
  }
}

}  // namespace

StoredUserNotificationCenter::StoredUserNotificationCenter(OperationQueueFactory& queues,
                                                           std::shared_ptr<SettingsStore> store)
    : store_(std::move(store)), queue_(queues.makeQueue()) {
  queue_->setMaxConcurrentOperationCount(1);
}

void StoredUserNotificationCenter::enqueue(std::function<void(SettingsStore&)> step) {
  queue_->addOperation(std::make_shared<FunctionOperation>(
      [store = store_, step = std::move(step)] { step(*store); }));
}

void StoredUserNotificationCenter::getPendingNotificationRequests(
    std::function<void(Requests)> completion) {
  enqueue([completion = std::move(completion)](SettingsStore& store) { completion(load(store)); });
}

void StoredUserNotificationCenter::removePendingNotificationRequests(
    std::vector<std::string> identifiers) {
  enqueue([identifiers = std::move(identifiers)](SettingsStore& store) {
    Requests pending = load(store);
    const auto removed = std::erase_if(pending, [&](const UserNotificationRequest& request) {
      return std::ranges::find(identifiers, request.identifier) != identifiers.end();
    });
    if (removed > 0) save(store, pending);
  });
}

void StoredUserNotificationCenter::add(
    UserNotificationRequest request,
    std::function<void(std::optional<UserNotificationError>)> completion) {
  enqueue([request = std::move(request), completion = std::move(completion)](SettingsStore& store) {
    Requests pending = load(store);
    std::erase_if(pending, [&](const UserNotificationRequest& other) {
      return other.identifier == request.identifier;
    });
    pending.push_back(request);
    auto error = save(store, pending);
    if (completion) completion(std::move(error));
  });
}

}  // namespace ovinta::platform::linux
