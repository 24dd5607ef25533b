#include "platform/linux/main/GLibMainQueue.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {
namespace {

using std::chrono::microseconds;
using testing::ElementsAre;

class GLibMainQueueTest : public testing::Test {
 protected:
  GLibMainQueueTest() { rememberMainThread(); }

  MainQueue::Task record(std::string mark) {
    return [this, mark = std::move(mark)] {
      EXPECT_TRUE(queue_.isMain());
      calls_.push_back(mark);
    };
  }

  std::int64_t now_ = 0;
  GLibMainQueue queue_{[this] { return now_; }};
  std::vector<std::string> calls_;
};

TEST_F(GLibMainQueueTest, RunsTasksByDueTimeThenBySubmissionAndNeverInsideTheCall) {
  queue_.asyncAfter(microseconds(2000), record("late"));
  queue_.asyncAfter(microseconds(1000), record("early"));
  queue_.asyncAfter(microseconds(-5), record("first"));
  queue_.async([this] {
    queue_.async(record("nested"));
    calls_.push_back("second");
    // Everything is due: the order must not follow from when the loop came round.
    now_ = 2500;
    queue_.async(quitMainLoop);
  });
  queue_.async(record("third"));
  EXPECT_THAT(calls_, ElementsAre());
  runMainLoop();
  EXPECT_THAT(calls_, ElementsAre("first", "second", "third", "nested", "early", "late"));
}

TEST_F(GLibMainQueueTest, SyncRunsAtOnceOnTheMainThreadAndThroughTheQueueElsewhere) {
  queue_.async(record("queued"));
  queue_.sync(record("sync on main"));
  std::thread other([this] {
    EXPECT_FALSE(queue_.isMain());
    queue_.sync(record("sync"));
    calls_.push_back("after sync");
    quitMainLoop();
  });
  runMainLoop();
  other.join();
  EXPECT_THAT(calls_, ElementsAre("sync on main", "queued", "sync", "after sync"));
}

TEST_F(GLibMainQueueTest, KeepsTheOrderOfEachThreadThatSubmits) {
  constexpr int kThreads = 4, kTasks = 200;
  std::vector<int> seen(kThreads, 0);
  int left = kThreads * kTasks;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int task = 0; task < kTasks; ++task) {
        queue_.async([&, thread, task] {
          EXPECT_EQ(seen[thread]++, task);
          if (--left == 0) quitMainLoop();
        });
      }
    });
  }
  runMainLoop();
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(left, 0);
}

TEST_F(GLibMainQueueTest, QuittingEndsTheLoopAfterTheTaskInProgressOrBeforeTheFirst) {
  queue_.async([] { quitMainLoop(); });
  queue_.async(record("next run"));
  runMainLoop();
  EXPECT_THAT(calls_, ElementsAre());
  quitMainLoop();
  runMainLoop();
  EXPECT_THAT(calls_, ElementsAre());
  queue_.async(quitMainLoop);
  runMainLoop();
  EXPECT_THAT(calls_, ElementsAre("next run"));
}

TEST_F(GLibMainQueueTest, DropsTheTasksWithItselfForWhichNobodyWaits) {
  std::counting_semaphore<> asked(0);
  // A task is timed when it is submitted.
  auto queue = std::make_unique<GLibMainQueue>([&] {
    if (!queue_.isMain()) asked.release();
    return 0;
  });
  const auto held = std::make_shared<int>();
  queue->async([held] { ADD_FAILURE() << "was dropped"; });
  std::thread other([&, waiting = queue.get()] {
    waiting->sync(record("sync"));
    calls_.push_back("after sync");
    quitMainLoop();
  });
  asked.acquire();
  queue.reset();
  EXPECT_EQ(held.use_count(), 1);
  runMainLoop();
  other.join();
  EXPECT_THAT(calls_, ElementsAre("sync", "after sync"));
}

TEST_F(GLibMainQueueTest, TheLoopRefusesAnotherThread) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::thread(runMainLoop).join(), testing::KilledBySignal(SIGABRT),
              "must run on the main thread");
}

}  // namespace
}  // namespace ovinta::platform::linuxos
