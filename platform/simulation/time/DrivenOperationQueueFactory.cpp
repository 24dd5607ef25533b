#include "platform/simulation/time/DrivenOperationQueueFactory.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

namespace ovinta::platform::simulation {

class DrivenOperationQueueFactory::State {
 public:
  struct Waiting {
    const OperationQueue* queue = nullptr;
    std::shared_ptr<Operation> operation;
  };

  mutable std::mutex mutex;
  std::deque<Waiting> waiting;
  std::vector<std::weak_ptr<OperationQueue>> queues;
};

class DrivenOperationQueueFactory::Queue : public OperationQueue {
 public:
  explicit Queue(std::shared_ptr<State> state) : state_(std::move(state)) {}
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;

  ~Queue() override {
    std::deque<State::Waiting> kept;
    const std::lock_guard lock(state_->mutex);
    for (auto& entry : state_->waiting) {
      if (entry.queue != this) kept.push_back(entry);
    }
    kept.swap(state_->waiting);
  }

  void addOperation(std::shared_ptr<Operation> operation) override {
    const std::lock_guard lock(state_->mutex);
    state_->waiting.push_back({this, std::move(operation)});
  }

  void setMaxConcurrentOperationCount(std::size_t count) override { count_ = count; }
  std::size_t maxConcurrentOperationCount() const override { return count_; }

 private:
  const std::shared_ptr<State> state_;
  std::atomic<std::size_t> count_{kDefaultMaxConcurrentOperationCount};
};

DrivenOperationQueueFactory::DrivenOperationQueueFactory() : state_(std::make_shared<State>()) {}

std::shared_ptr<OperationQueue> DrivenOperationQueueFactory::makeQueue() {
  auto queue = std::make_shared<Queue>(state_);
  const std::lock_guard lock(state_->mutex);
  state_->queues.push_back(queue);
  return queue;
}

std::size_t DrivenOperationQueueFactory::runAll() {
  for (std::size_t ran = 0;; ++ran) {
    State::Waiting next;
    {
      const std::lock_guard lock(state_->mutex);
      if (state_->waiting.empty()) return ran;
      next = std::move(state_->waiting.front());
      state_->waiting.pop_front();
    }
    next.operation->main();
  }
}

std::size_t DrivenOperationQueueFactory::waitingCount() const {
  const std::lock_guard lock(state_->mutex);
  return state_->waiting.size();
}

std::vector<std::shared_ptr<OperationQueue>> DrivenOperationQueueFactory::queues() const {
  const std::lock_guard lock(state_->mutex);
  std::vector<std::shared_ptr<OperationQueue>> living;
  for (const auto& queue : state_->queues) {
    if (auto found = queue.lock()) living.push_back(std::move(found));
  }
  return living;
}

}  // namespace ovinta::platform::simulation
