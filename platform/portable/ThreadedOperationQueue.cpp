#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/FatalError.h"
#include "platform/portable/ExitGate.h"
#include "platform/portable/Portable.h"

namespace ovinta::platform::portable {
namespace {

std::size_t defaultConcurrency() {
  static const auto count = std::max<std::size_t>(4, std::thread::hardware_concurrency());
  return count;
}

/// What a queue shares with its threads. The threads are detached and keep it alive, so dropping
/// the queue waits for no operation.
class WorkState : public std::enable_shared_from_this<WorkState> {
 public:
  void add(std::shared_ptr<Operation> operation) {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(std::move(operation));
      startThreads();
    }
    wakeUp_.notify_one();
  }

  void setLimit(std::size_t count) {
    {
      const std::lock_guard lock(mutex_);
      requestedLimit_ = count;
      startThreads();
    }
    wakeUp_.notify_all();
  }

  std::size_t requestedLimit() const {
    const std::lock_guard lock(mutex_);
    return requestedLimit_;
  }

  void close() {
    std::deque<std::shared_ptr<Operation>> dropped;
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
      dropped.swap(waiting_);
    }
    wakeUp_.notify_all();
  }

 private:
  std::size_t limit() const {
    return requestedLimit_ == OperationQueue::kDefaultMaxConcurrentOperationCount
               ? defaultConcurrency()
               : requestedLimit_;
  }

  /// Makes the threads that are missing to run what may run now. Call with the lock held.
  void startThreads() {
    const auto wanted = std::min(limit(), running_ + waiting_.size());
    while (threads_ < wanted) {
      try {
        std::thread([self = shared_from_this()] { self->work(); }).detach();
      } catch (const std::system_error&) {
        if (threads_ == 0) fatalError("Could not start a thread for an operation queue");
        return;
      }
      ++threads_;
    }
  }

  void work() {
    std::unique_lock lock(mutex_);
    while (true) {
      wakeUp_.wait(lock, [this] { return closed_ || (!waiting_.empty() && running_ < limit()); });
      if (closed_ || !ExitGate::enter()) return;
      auto operation = std::move(waiting_.front());
      waiting_.pop_front();
      ++running_;
      lock.unlock();
      operation->main();
      operation.reset();
      ExitGate::leave();
      lock.lock();
      --running_;
    }
  }

  mutable std::mutex mutex_;
  std::condition_variable wakeUp_;
  std::deque<std::shared_ptr<Operation>> waiting_;
  std::size_t requestedLimit_ = OperationQueue::kDefaultMaxConcurrentOperationCount;
  std::size_t running_ = 0;
  /// How many threads there are, running an operation or idle.
  std::size_t threads_ = 0;
  bool closed_ = false;
};

class ThreadedOperationQueue : public OperationQueue {
 public:
  ~ThreadedOperationQueue() override { state_->close(); }

  void addOperation(std::shared_ptr<Operation> operation) override {
    state_->add(std::move(operation));
  }
  void setMaxConcurrentOperationCount(std::size_t count) override { state_->setLimit(count); }
  std::size_t maxConcurrentOperationCount() const override { return state_->requestedLimit(); }

 private:
  std::shared_ptr<WorkState> state_ = std::make_shared<WorkState>();
};

class ThreadedOperationQueueFactory : public OperationQueueFactory {
 public:
  std::shared_ptr<OperationQueue> makeQueue() override {
    ExitGate::watch();
    return std::make_shared<ThreadedOperationQueue>();
  }
};

}  // namespace

std::shared_ptr<OperationQueueFactory> makeOperationQueueFactory() {
  return std::make_shared<ThreadedOperationQueueFactory>();
}

}  // namespace ovinta::platform::portable
