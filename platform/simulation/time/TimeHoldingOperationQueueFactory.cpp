#include "platform/simulation/time/TimeHoldingOperationQueueFactory.h"

#include <atomic>
#include <utility>

namespace ovinta::platform::simulation {
namespace {

class TimeHoldingOperation : public Operation {
 public:
  TimeHoldingOperation(std::shared_ptr<Operation> operation, std::unique_ptr<TimeHold> hold)
      : hold_(std::move(hold)), operation_(std::move(operation)) {}

  void main() override {
    hold_->runInTurn([this] {
      operation_->main();
      operation_ = nullptr;
    });
    hold_ = nullptr;
  }

 private:
  std::unique_ptr<TimeHold> hold_;
  std::shared_ptr<Operation> operation_;
};

class TimeHoldingOperationQueue : public OperationQueue {
 public:
  TimeHoldingOperationQueue(std::shared_ptr<OperationQueue> base,
                            std::function<std::unique_ptr<TimeHold>()> makeHold)
      : base_(std::move(base)), makeHold_(std::move(makeHold)) {
    base_->setMaxConcurrentOperationCount(1);
  }

  void addOperation(std::shared_ptr<Operation> operation) override {
    base_->addOperation(std::make_shared<TimeHoldingOperation>(std::move(operation), makeHold_()));
  }

  void setMaxConcurrentOperationCount(std::size_t count) override {
    requested_ = count;
    base_->setMaxConcurrentOperationCount(count == kDefaultMaxConcurrentOperationCount ? 1 : count);
  }

  std::size_t maxConcurrentOperationCount() const override { return requested_; }

 private:
  const std::shared_ptr<OperationQueue> base_;
  const std::function<std::unique_ptr<TimeHold>()> makeHold_;
  std::atomic<std::size_t> requested_{kDefaultMaxConcurrentOperationCount};
};

}  // namespace

std::shared_ptr<OperationQueue> TimeHoldingOperationQueueFactory::makeQueue() {
  return std::make_shared<TimeHoldingOperationQueue>(base_->makeQueue(), makeHold_);
}

}  // namespace ovinta::platform::simulation
