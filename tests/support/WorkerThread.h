#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ovinta::test {

/// A thread that runs what it is given, in order. What has not begun when it is destroyed never
/// does. May be destroyed by what it runs.
class WorkerThread {
 public:
  WorkerThread() = default;
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  ~WorkerThread() {
    {
      const std::lock_guard lock(work_->mutex);
      work_->isEnding = true;
    }
    work_->changed.notify_one();
    if (thread_.get_id() == std::this_thread::get_id()) {
      thread_.detach();
    } else {
      thread_.join();
    }
  }

  void run(std::function<void()> task) {
    {
      const std::lock_guard lock(work_->mutex);
      work_->tasks.push_back(std::move(task));
    }
    work_->changed.notify_one();
  }

 private:
  struct Work {
    void serve() {
      std::unique_lock lock(mutex);
      for (;;) {
        changed.wait(lock, [this] { return isEnding || !tasks.empty(); });
        if (isEnding) return;
        auto task = std::move(tasks.front());
        tasks.pop_front();
        lock.unlock();
        task();
        // What it held ends outside of the lock.
        task = nullptr;
        lock.lock();
      }
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> tasks;
    bool isEnding = false;
  };

  const std::shared_ptr<Work> work_ = std::make_shared<Work>();
  std::thread thread_{[work = work_] { work->serve(); }};
};

}  // namespace ovinta::test
