#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace ovinta::test {

/// A thread that runs what it is given, in order. What has not begun when it is destroyed never
/// does.
class WorkerThread {
 public:
  WorkerThread() = default;
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  ~WorkerThread() {
    {
      const std::lock_guard lock(mutex_);
      isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }

  void run(std::function<void()> task) {
    {
      const std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
    }
    changed_.notify_one();
  }

 private:
  void serve() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return isEnding_ || !tasks_.empty(); });
      if (isEnding_) return;
      const auto task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  bool isEnding_ = false;
  std::thread thread_{[this] { serve(); }};
};

}  // namespace ovinta::test
