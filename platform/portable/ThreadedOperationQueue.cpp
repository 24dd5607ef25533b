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

/// What calls on a thread to be run.
class Runnable {
 public:
  virtual ~Runnable() = default;
  /// False when the process exits, so that the thread must do nothing more.
  virtual bool run() = 0;
};

/// The threads of all queues. One is made when all others are busy, and kept to the process's end
/// for whichever queue calls next; they are detached, so that nobody waits for them.
class Threads {
 public:
  static Threads& shared() {
    static auto* const instance = new Threads;
    return *instance;
  }

  /// Has the work run on one of the threads.
  void call(std::shared_ptr<Runnable> work) {
    {
      const std::lock_guard lock(mutex_);
      calls_.push_back(std::move(work));
      if (idle_ < calls_.size()) startThread();
    }
    wakeUp_.notify_one();
  }

 private:
  /// A thread counts as idle before it runs. Call with the lock held.
  void startThread() {
    try {
      std::thread([this] { serve(); }).detach();
    } catch (const std::system_error&) {
      // One that is busy comes to it once its queue has nothing more to run, so that operations
      // which wait for those of other queues may do so for ever on a system without threads.
      if (count_ == 0) fatalError("Could not start a thread for an operation queue");
      return;
    }
    ++count_;
    ++idle_;
  }

  void serve() {
    std::unique_lock lock(mutex_);
    while (true) {
      wakeUp_.wait(lock, [this] { return !calls_.empty(); });
      --idle_;
      auto work = std::move(calls_.front());
      calls_.pop_front();
      lock.unlock();
      if (!work->run()) return;
      work.reset();
      lock.lock();
      ++idle_;
    }
  }

  std::mutex mutex_;
  std::condition_variable wakeUp_;
  std::deque<std::shared_ptr<Runnable>> calls_;
  std::size_t count_ = 0;
  std::size_t idle_ = 0;
};

/// What a queue shares with the threads that run its operations. These keep it alive, so dropping
/// the queue waits for no operation.
class WorkState : public Runnable, public std::enable_shared_from_this<WorkState> {
 public:
  void add(std::shared_ptr<Operation> operation) {
    change([&] { waiting_.push_back(std::move(operation)); });
  }

  void setLimit(std::size_t count) {
    change([&] { requestedLimit_ = count; });
  }

  std::size_t requestedLimit() const {
    const std::lock_guard lock(mutex_);
    return requestedLimit_;
  }

  void close() {
    std::deque<std::shared_ptr<Operation>> dropped;
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    dropped.swap(waiting_);
  }

  /// Runs what waits, one after the other, for as long as the limit allows this thread to.
  bool run() override {
    std::unique_lock lock(mutex_);
    --called_;
    while (!isClosed_ && !waiting_.empty() && running_ < limit()) {
      if (!ExitGate::enter()) return false;
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
    return true;
  }

 private:
  std::size_t limit() const {
    return requestedLimit_ == OperationQueue::kDefaultMaxConcurrentOperationCount
               ? defaultConcurrency()
               : requestedLimit_;
  }

  /// Makes the change and calls the threads that are missing to run what may run now.
  template <class Change>
  void change(const Change& make) {
    std::size_t missing = 0;
    {
      const std::lock_guard lock(mutex_);
      make();
      const auto wanted = std::min(limit(), running_ + waiting_.size());
      missing = wanted - std::min(wanted, running_ + called_);
      called_ += missing;
    }
    for (; missing > 0; --missing) Threads::shared().call(shared_from_this());
  }

  mutable std::mutex mutex_;
  std::deque<std::shared_ptr<Operation>> waiting_;
  std::size_t requestedLimit_ = OperationQueue::kDefaultMaxConcurrentOperationCount;
  std::size_t running_ = 0;
  /// How many threads were called and have not come yet.
  std::size_t called_ = 0;
  bool isClosed_ = false;
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
