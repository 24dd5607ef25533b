#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <future>
#include <latch>
#include <semaphore>
#include <set>
#include <thread>
#include <vector>

#include "platform/portable/Portable.h"
#include "tests/support/FunctionOperation.h"

namespace ovinta::platform {
namespace {

using test::operation;

class OperationQueueTest : public testing::Test {
 protected:
  OperationQueueTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  std::shared_ptr<OperationQueueFactory> factory_ = portable::makeOperationQueueFactory();
};

TEST_F(OperationQueueTest, QueuesShareTheThreadsThatAreNotBusy) {
  constexpr int kQueues = 100;
  std::set<std::thread::id> threads;
  for (int i = 0; i < kQueues; ++i) {
    const auto queue = factory_->makeQueue();
    std::binary_semaphore ended{0};
    queue->addOperation(operation([&] {
      threads.insert(std::this_thread::get_id());
      ended.release();
    }));
    ended.acquire();
  }
  // A thread may be called before the one that has just ended its work is free.
  EXPECT_LT(threads.size(), kQueues / 2);

  // While others are held up, a queue has its own thread and its own order.
  constexpr int kBusy = 20;
  std::latch together(kBusy + 1), ended(kBusy + kQueues);
  std::vector<std::shared_ptr<OperationQueue>> queues(kBusy + 1);
  for (auto& queue : queues) {
    queue = factory_->makeQueue();
    queue->setMaxConcurrentOperationCount(1);
  }
  for (int i = 0; i < kBusy; ++i) {
    queues[i]->addOperation(operation([&] {
      together.arrive_and_wait();
      ended.count_down();
    }));
  }
  std::vector<int> order;
  for (int number = 0; number < kQueues; ++number) {
    queues.back()->addOperation(operation([&, number] {
      order.push_back(number);
      if (number == kQueues - 1) together.count_down();
      ended.count_down();
    }));
  }
  ended.wait();
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST_F(OperationQueueTest, TheExitWaitsForWhatRunsButNotForItsCaller) {
  EXPECT_EXIT(
      {
        static std::atomic<bool> hasEnded{false};
        static std::binary_semaphore exits{0};
        // Handlers are called in the reverse order: the queues' comes between the two.
        std::atexit([] { std::_Exit(hasEnded ? 0 : 3); });
        const auto queue = factory_->makeQueue();
        std::atexit([] { exits.release(); });
        std::latch running(1);
        queue->addOperation(operation([&] {
          running.count_down();
          exits.acquire();
          for (int i = 0; i < 5; ++i) std::this_thread::yield();
          hasEnded = true;
        }));
        running.wait();
        queue->addOperation(operation([] { std::exit(0); }));
        std::promise<void>().get_future().wait();
      },
      testing::ExitedWithCode(0), "");
}

/// Tells of the end of a thread that has touched it.
struct ThreadEnd {
  std::binary_semaphore* ended = nullptr;
  ~ThreadEnd() {
    if (ended) ended->release();
  }
};
thread_local ThreadEnd threadEnd;

TEST_F(OperationQueueTest, NothingIsStartedAfterTheExitHasBegun) {
  EXPECT_EXIT(
      {
        static std::binary_semaphore exits{0};
        static std::binary_semaphore ended{0};
        std::atexit([] {
          exits.release();
          ended.acquire();
        });
        const auto queue = factory_->makeQueue();
        queue->setMaxConcurrentOperationCount(1);
        std::binary_semaphore runs{0};
        queue->addOperation(operation([&runs] {
          threadEnd.ended = &ended;
          runs.release();
          exits.acquire();
        }));
        queue->addOperation(operation([] { std::_Exit(3); }));
        runs.acquire();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ovinta::platform
