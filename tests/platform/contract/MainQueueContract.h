#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/MainQueue.h"

namespace ovinta::platform::contract {

/// What every main queue promises. A rig is a fixture, run on the main thread, with `queue_`, a
/// pointer, `advance(interval)`, by which time moves and all runs that is due then, and
/// `runUntil(condition)`, which runs what is due until the condition, made true by a task, holds.
template <class Rig>
class MainQueueContract : public Rig {
 protected:
  MainQueue::Task record(std::string mark) {
    return [this, mark = std::move(mark)] {
      EXPECT_TRUE(this->queue_->isMain());
      calls_.push_back(mark);
    };
  }
  std::vector<std::string> take() { return std::exchange(calls_, {}); }

  std::vector<std::string> calls_;
};
TYPED_TEST_SUITE_P(MainQueueContract);

using std::chrono::microseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TYPED_TEST_P(MainQueueContract, RunsTasksByDueTimeThenBySubmissionAndNeverInsideTheCall) {
  MainQueue& queue = *this->queue_;
  const auto kept = std::make_shared<int>();
  queue.asyncAfter(TimeInterval::max(), [] { ADD_FAILURE() << "is never due"; });
  queue.asyncAfter(microseconds(2000), this->record("late"));
  queue.asyncAfter(microseconds(1000), this->record("early"));
  queue.asyncAfter(microseconds(1000), [late = this->record("early too"), kept] { late(); });
  queue.asyncAfter(microseconds(-5), this->record("first"));
  queue.async([this, &queue] {
    queue.async(this->record("nested"));
    this->calls_.push_back("second");
  });
  queue.async(this->record("third"));
  EXPECT_THAT(this->take(), IsEmpty());
  this->advance({});
  EXPECT_THAT(this->take(), ElementsAre("first", "second", "third", "nested"));
  this->advance(microseconds(999));
  EXPECT_THAT(this->take(), IsEmpty());
  this->advance(microseconds(1));
  EXPECT_THAT(this->take(), ElementsAre("early", "early too"));
  EXPECT_EQ(kept.use_count(), 1) << "a task is kept after it has run";
  queue.asyncAfter(microseconds(500), this->record("between"));
  this->advance(microseconds(5000));
  EXPECT_THAT(this->take(), ElementsAre("between", "late"));
}

TYPED_TEST_P(MainQueueContract, SyncRunsAtOnceOnTheMainThreadAndThroughTheQueueElsewhere) {
  MainQueue& queue = *this->queue_;
  bool isOver = false;
  std::atomic<bool> isPast = false;
  queue.async(this->record("queued"));
  queue.sync(this->record("sync on main"));
  EXPECT_THAT(this->take(), ElementsAre("sync on main"));
  std::jthread other([&] {
    EXPECT_FALSE(queue.isMain());
    queue.sync([&, sync = this->record("sync")] {
      for (int i = 0; i < 20 && !isPast; ++i) std::this_thread::yield();
      EXPECT_FALSE(isPast);
      sync();
    });
    isPast = true;
    this->calls_.push_back("after sync");
    queue.async([&] { isOver = true; });
  });
  this->runUntil([&] { return isOver; });
  EXPECT_THAT(this->take(), ElementsAre("queued", "sync", "after sync"));
}

TYPED_TEST_P(MainQueueContract, RunsEachTaskOnceInTheOrderOfTheThreadThatSubmits) {
  constexpr int kThreads = 4, kTasks = 200;
  std::vector<int> seen(kThreads, 0);
  int left = kThreads * kTasks;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int task = 0; task < kTasks; ++task) {
        this->queue_->async([&, thread, task] {
          EXPECT_EQ(seen[thread]++, task);
          --left;
        });
      }
    });
  }
  this->runUntil([&] { return left <= 0; });
  threads.clear();
  this->advance({});
  EXPECT_EQ(left, 0);
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract,
                            RunsTasksByDueTimeThenBySubmissionAndNeverInsideTheCall,
                            SyncRunsAtOnceOnTheMainThreadAndThroughTheQueueElsewhere,
                            RunsEachTaskOnceInTheOrderOfTheThreadThatSubmits);

}  // namespace ovinta::platform::contract
