#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <latch>
#include <mutex>
#include <numeric>
#include <semaphore>
#include <string>
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

TEST_F(OperationQueueTest, AQueueOfOneRunsInTheOrderOfAddingAndNeverTwoAtOnce) {
  constexpr int kCount = 500;
  const auto queue = factory_->makeQueue();
  queue->setMaxConcurrentOperationCount(1);
  EXPECT_EQ(queue->maxConcurrentOperationCount(), 1U);
  std::vector<int> order;  // Unguarded on purpose.
  std::latch done(kCount);
  for (int number = 0; number < kCount; ++number) {
    queue->addOperation(operation([&, number] {
      order.push_back(number);
      done.count_down();
    }));
  }
  done.wait();
  std::vector<int> expected(kCount);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(order, expected);
}

TEST_F(OperationQueueTest, RunsAsManyAtOnceAsTheLimitAllowsAndNoMore) {
  constexpr int kCount = 60;
  for (const std::size_t limit : {std::size_t{3}, std::size_t{0}}) {
    const auto queue = factory_->makeQueue();
    EXPECT_EQ(queue->maxConcurrentOperationCount(),
              OperationQueue::kDefaultMaxConcurrentOperationCount);
    queue->setMaxConcurrentOperationCount(limit);
    std::latch together(3);
    std::atomic<int> running = 0, most = 0;
    std::latch done(kCount);
    for (int number = 0; number < kCount; ++number) {
      queue->addOperation(operation([&, number] {
        const int now = ++running;
        for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
        }
        if (number < 3) together.arrive_and_wait();
        --running;
        done.count_down();
      }));
    }
    done.wait();
    if (limit != 0) {
      EXPECT_EQ(most, 3);
    }
  }
}

TEST_F(OperationQueueTest, TheLimitMayChangeWhileOperationsRun) {
  const auto queue = factory_->makeQueue();
  queue->setMaxConcurrentOperationCount(1);
  std::promise<void> firstRuns, secondRuns, done;
  queue->addOperation(operation([&] {
    firstRuns.set_value();
    secondRuns.get_future().wait();
    done.set_value();
  }));
  queue->addOperation(operation([&] { secondRuns.set_value(); }));
  firstRuns.get_future().wait();
  queue->setMaxConcurrentOperationCount(2);
  done.get_future().wait();

  // Idle threads that are now too many must not run more than the limit.
  queue->setMaxConcurrentOperationCount(1);
  int unguarded = 0;
  std::latch all(200);
  for (int number = 0; number < 200; ++number) {
    queue->addOperation(operation([&] {
      ++unguarded;
      all.count_down();
    }));
  }
  all.wait();
  EXPECT_EQ(unguarded, 200);
}

TEST_F(OperationQueueTest, DroppingAQueueDropsWhatWaitsAndLeavesWhatRuns) {
  auto queue = factory_->makeQueue();
  queue->setMaxConcurrentOperationCount(1);
  std::promise<void> runs, mayEnd, ended;
  queue->addOperation(operation([&] {
    runs.set_value();
    mayEnd.get_future().wait();
    ended.set_value();
  }));
  runs.get_future().wait();
  auto waiting = operation([] { ADD_FAILURE() << "was dropped"; });
  const std::weak_ptr<Operation> watched = waiting;
  queue->addOperation(std::move(waiting));
  queue.reset();
  EXPECT_TRUE(watched.expired());
  mayEnd.set_value();
  ended.get_future().wait();
}

TEST_F(OperationQueueTest, TheExitWaitsForWhatRunsButNotForItsCaller) {
  EXPECT_EXIT(
      {
        static std::atomic<bool> hasEnded{false};
        // Added earlier, called later.
        std::atexit([] { std::_Exit(hasEnded ? 0 : 3); });
        const auto queue = factory_->makeQueue();
        std::latch running(1);
        queue->addOperation(operation([&] {
          running.count_down();
          for (int i = 0; i < 100; ++i) std::this_thread::yield();
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
