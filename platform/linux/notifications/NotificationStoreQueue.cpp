#include "platform/linux/notifications/NotificationStoreQueue.h"

#include <exception>
#include <string>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

class StepOperation : public Operation {
 public:
  StepOperation(std::shared_ptr<NotificationStore> store, std::shared_ptr<Log> log,
                NotificationStoreQueue::Step step)
      : store_(std::move(store)), log_(std::move(log)), step_(std::move(step)) {}

  void main() override {
    try {
      step_(*store_);
    } catch (const std::exception& failure) {
      log_->write(std::string("Pending notifications: ") + failure.what());
    }
  }

 private:
  const std::shared_ptr<NotificationStore> store_;
  const std::shared_ptr<Log> log_;
  const NotificationStoreQueue::Step step_;
};

}  // namespace

NotificationStoreQueue::NotificationStoreQueue(OperationQueueFactory& queues,
                                               std::optional<std::filesystem::path> file,
                                               std::shared_ptr<Log> log)
    : log_(std::move(log)),
      store_(std::make_shared<NotificationStore>(std::move(file), log_)),
      queue_(queues.makeQueue()) {
  queue_->setMaxConcurrentOperationCount(1);
}

void NotificationStoreQueue::enqueue(Step step) {
  queue_->addOperation(std::make_shared<StepOperation>(store_, log_, std::move(step)));
}

}  // namespace ovinta::platform::linuxos
