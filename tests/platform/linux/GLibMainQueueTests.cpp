#include "platform/linux/main/GLibMainQueue.h"

#include <gmock/gmock.h>

#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {
namespace {

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

  GLibMainQueue queue_;
  std::vector<std::string> calls_;
};

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
