#include "platform/simulation/time/MainQueueOperations.h"

#include <atomic>
#include <utility>

namespace ovinta::platform::simulation {
namespace {

class MainQueueOperationQueue : public OperationQueue,
                                public std::enable_shared_from_this<MainQueueOperationQueue> {
 public:
  explicit MainQueueOperationQueue(std::shared_ptr<MainQueue> mainQueue)
      : mainQueue_(std::move(mainQueue)) {}

  void addOperation(std::shared_ptr<Operation> operation) override {
    mainQueue_->async([queue = weak_from_this(), operation = std::move(operation)] {
      // A queue that is gone has dropped what waited.
      if (const auto held = queue.lock()) operation->main();
    });
  }

  void setMaxConcurrentOperationCount(std::size_t count) override { count_ = count; }
  std::size_t maxConcurrentOperationCount() const override { return count_; }

 private:
  const std::shared_ptr<MainQueue> mainQueue_;
  std::atomic<std::size_t> count_{kDefaultMaxConcurrentOperationCount};
};

class MainQueueOperationQueueFactory : public OperationQueueFactory {
 public:
  explicit MainQueueOperationQueueFactory(std::shared_ptr<MainQueue> mainQueue)
      : mainQueue_(std::move(mainQueue)) {}

  std::shared_ptr<OperationQueue> makeQueue() override {
    return std::make_shared<MainQueueOperationQueue>(mainQueue_);
  }

 private:
  const std::shared_ptr<MainQueue> mainQueue_;
};

}  // namespace

std::shared_ptr<OperationQueueFactory> makeMainQueueOperations(
    std::shared_ptr<MainQueue> mainQueue) {
  return std::make_shared<MainQueueOperationQueueFactory>(std::move(mainQueue));
}

}  // namespace ovinta::platform::simulation
