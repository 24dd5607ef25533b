#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

#include "platform/OperationQueue.h"
#include "tests/support/FunctionOperation.h"

namespace ovinta::platform::contract {

using test::operation;

/// What every operation queue promises. A rig is a fixture with `factory_`, a pointer, and
/// `work()`, which has what waits run where it does not by itself, and may return before that has
/// ended.
template <class Rig>
class OperationQueueContract : public Rig {
 protected:
  std::shared_ptr<OperationQueue> makeQueue(std::size_t limit) {
    auto queue = this->factory_->makeQueue();
    EXPECT_EQ(queue->maxConcurrentOperationCount(), 0U);
    queue->setMaxConcurrentOperationCount(limit);
    EXPECT_EQ(queue->maxConcurrentOperationCount(), limit);
    return queue;
  }
};
TYPED_TEST_SUITE_P(OperationQueueContract);

TYPED_TEST_P(OperationQueueContract, AQueueOfOneRunsEachOnceInTheOrderOfAddingOnAnotherThread) {
  constexpr int kCount = 500;
  const auto queue = this->makeQueue(1);
  std::vector<int> order;  // Unguarded on purpose.
  std::latch done(kCount + 1);
  const auto note = [&, caller = std::this_thread::get_id()](int number) {
    EXPECT_NE(std::this_thread::get_id(), caller);
    order.push_back(number);
    done.count_down();
  };
  for (int number = 0; number < kCount; ++number) {
    queue->addOperation(operation([&, number] {
      // Not inside the call.
      if (number == kCount - 1) queue->addOperation(operation([&] { note(kCount); }));
      note(number);
    }));
  }
  this->work();
  done.wait();
  std::vector<int> expected(kCount + 1);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(order, expected);
}

TYPED_TEST_P(OperationQueueContract, RunsWhatSeveralThreadsAddOnceAndNoMoreAtOnceThanTheLimit) {
  constexpr int kThreads = 4, kCount = 50, kLimit = 3;
  const auto queue = this->makeQueue(kLimit);
  std::vector<std::atomic<int>> runs(kThreads * kCount);
  std::atomic<int> running = 0;
  std::latch done(kThreads * kCount);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int number = 0; number < kCount; ++number) {
        queue->addOperation(operation([&, number, own = thread * kCount + number] {
          EXPECT_LE(++running, kLimit);
          if (number % 10 == 0) std::this_thread::yield();
          ++runs[own];
          --running;
          done.count_down();
        }));
      }
    });
  }
  threads.clear();
  this->work();
  done.wait();
  for (const auto& count : runs) EXPECT_EQ(count, 1);
}

TYPED_TEST_P(OperationQueueContract, DroppingAQueueDropsWhatWaitsAndLeavesWhatRuns) {
  auto queue = this->makeQueue(1);
  auto waiting = operation([] { ADD_FAILURE() << "was dropped"; });
  const std::weak_ptr<Operation> watched = waiting;
  std::latch mayDrop(1), ended(1);
  queue->addOperation(operation([&] {
    mayDrop.wait();
    queue.reset();
    EXPECT_TRUE(watched.expired());
    ended.count_down();
  }));
  queue->addOperation(std::move(waiting));
  mayDrop.count_down();
  this->work();
  ended.wait();
}

REGISTER_TYPED_TEST_SUITE_P(OperationQueueContract,
                            AQueueOfOneRunsEachOnceInTheOrderOfAddingOnAnotherThread,
                            RunsWhatSeveralThreadsAddOnceAndNoMoreAtOnceThanTheLimit,
                            DroppingAQueueDropsWhatWaitsAndLeavesWhatRuns);

/// What those promise in addition that run operations at the same time, by themselves.
template <class Rig>
class ParallelOperationQueueContract : public OperationQueueContract<Rig> {};
TYPED_TEST_SUITE_P(ParallelOperationQueueContract);

TYPED_TEST_P(ParallelOperationQueueContract, RunsAsManyAtOnceAsTheLimitAllowsAlsoWhenItChanges) {
  for (const std::size_t limit : {3, 0}) {
    const auto queue = this->makeQueue(1);
    std::latch firstRuns(1), together(3), ended(3);
    for (int number = 0; number < 3; ++number) {
      queue->addOperation(operation([&, number] {
        if (number == 0) firstRuns.count_down();
        together.arrive_and_wait();
        ended.count_down();
      }));
    }
    firstRuns.wait();
    queue->setMaxConcurrentOperationCount(limit);
    ended.wait();

    // Idle threads that are now too many must not run more than the limit.
    queue->setMaxConcurrentOperationCount(1);
    std::atomic<int> running = 0;
    std::latch all(200);
    for (int number = 0; number < 200; ++number) {
      queue->addOperation(operation([&, number] {
        EXPECT_EQ(++running, 1);
        if (number % 20 == 0) std::this_thread::yield();
        --running;
        all.count_down();
      }));
    }
    all.wait();
  }
}

REGISTER_TYPED_TEST_SUITE_P(ParallelOperationQueueContract,
                            RunsAsManyAtOnceAsTheLimitAllowsAlsoWhenItChanges);

}  // namespace ovinta::platform::contract
