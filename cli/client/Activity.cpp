#include "cli/client/Activity.h"

#include <utility>

namespace ovinta::cli {
namespace {

using namespace platform;

class CountedOperation : public Operation {
 public:
  CountedOperation(std::shared_ptr<Operation> inner, std::shared_ptr<Activity> activity)
      : inner_(std::move(inner)), activity_(std::move(activity)) {}

  void main() override {
    inner_->main();
    activity_->end();
  }

 private:
  std::shared_ptr<Operation> inner_;
  std::shared_ptr<Activity> activity_;
};

class CountingQueue : public OperationQueue {
 public:
  CountingQueue(std::shared_ptr<OperationQueue> base, std::shared_ptr<Activity> activity)
      : base_(std::move(base)), activity_(std::move(activity)) {}

  void addOperation(std::shared_ptr<Operation> operation) override {
    activity_->begin();
    base_->addOperation(std::make_shared<CountedOperation>(std::move(operation), activity_));
  }
  void setMaxConcurrentOperationCount(std::size_t count) override {
    base_->setMaxConcurrentOperationCount(count);
  }
  std::size_t maxConcurrentOperationCount() const override {
    return base_->maxConcurrentOperationCount();
  }

 private:
  std::shared_ptr<OperationQueue> base_;
  std::shared_ptr<Activity> activity_;
};

class CountingQueueFactory : public OperationQueueFactory {
 public:
  CountingQueueFactory(std::shared_ptr<OperationQueueFactory> base,
                       std::shared_ptr<Activity> activity)
      : base_(std::move(base)), activity_(std::move(activity)) {}

  std::shared_ptr<OperationQueue> makeQueue() override {
    return std::make_shared<CountingQueue>(base_->makeQueue(), activity_);
  }

 private:
  std::shared_ptr<OperationQueueFactory> base_;
  std::shared_ptr<Activity> activity_;
};

class CountingURLSession : public URLSession {
 public:
  CountingURLSession(std::shared_ptr<URLSession> base, std::shared_ptr<Activity> activity)
      : base_(std::move(base)), activity_(std::move(activity)) {}

  void startDataTask(URLRequest request, Completion completion) override {
    activity_->begin();
    base_->startDataTask(std::move(request),
                         [activity = activity_, completion = std::move(completion)](
                             auto data, auto response, auto error) {
                           completion(std::move(data), std::move(response), std::move(error));
                           activity->end();
                         });
  }

 private:
  std::shared_ptr<URLSession> base_;
  std::shared_ptr<Activity> activity_;
};

class CountingNotificationCenter : public UserNotificationCenter {
 public:
  CountingNotificationCenter(std::shared_ptr<UserNotificationCenter> base,
                             std::shared_ptr<Activity> activity)
      : base_(std::move(base)), activity_(std::move(activity)) {}

  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override {
    activity_->begin();
    base_->getPendingNotificationRequests(
        [activity = activity_, completion = std::move(completion)](auto pending) {
          completion(std::move(pending));
          activity->end();
        });
  }
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override {
    base_->removePendingNotificationRequests(std::move(identifiers));
    // Calls take effect in their order: when this one is answered, the removal is done.
    getPendingNotificationRequests([](const auto&) {});
  }
  void add(UserNotificationRequest request,
           std::function<void(std::optional<UserNotificationError>)> completion) override {
    activity_->begin();
    base_->add(std::move(request),
               [activity = activity_, completion = std::move(completion)](auto error) {
                 if (completion) completion(std::move(error));
                 activity->end();
               });
  }

 private:
  std::shared_ptr<UserNotificationCenter> base_;
  std::shared_ptr<Activity> activity_;
};

}  // namespace

void Activity::begin() {
  const std::lock_guard lock(mutex_);
  ++underWay_;
}

void Activity::end() {
  const std::lock_guard lock(mutex_);
  --underWay_;
  changed_.notify_all();
}

bool Activity::isIdle() const {
  const std::lock_guard lock(mutex_);
  return underWay_ == 0;
}

void Activity::waitUntilIdle() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return underWay_ == 0; });
}

std::shared_ptr<OperationQueueFactory> counting(std::shared_ptr<OperationQueueFactory> base,
                                                std::shared_ptr<Activity> activity) {
  return std::make_shared<CountingQueueFactory>(std::move(base), std::move(activity));
}

std::shared_ptr<URLSession> counting(std::shared_ptr<URLSession> base,
                                     std::shared_ptr<Activity> activity) {
  return std::make_shared<CountingURLSession>(std::move(base), std::move(activity));
}

std::shared_ptr<UserNotificationCenter> counting(std::shared_ptr<UserNotificationCenter> base,
                                                 std::shared_ptr<Activity> activity) {
  return std::make_shared<CountingNotificationCenter>(std::move(base), std::move(activity));
}

}  // namespace ovinta::cli
