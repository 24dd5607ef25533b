#include "platform/linux/main/GLibMainQueue.h"

#include <gmock/gmock.h>
#include <poll.h>

#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/Linux.h"
#include "platform/linux/main/MainThread.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/support/DeathTest.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using simulation::RecordingLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class GLibMainQueueTest : public testing::Test {
 protected:
  GLibMainQueueTest() { rememberMainThread(); }

  MainQueue::Task record(std::string mark) {
    return [this, mark = std::move(mark)] {
      EXPECT_TRUE(queue_.isMain());
      calls_.push_back(mark);
    };
  }

  /// A queue whose time is `now_` and whose log is `log_`.
  std::unique_ptr<GLibMainQueue> makeTimedQueue() {
    return std::make_unique<GLibMainQueue>(GLibMainQueue::Options{
        .now = [this] { return now_.count(); }, .log = log_, .patience = 5s});
  }

  GLibMainQueue queue_;
  std::vector<std::string> calls_;
  std::chrono::microseconds now_ = 1h;
  std::shared_ptr<RecordingLog> log_ = std::make_shared<RecordingLog>();
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
  auto queue = std::make_unique<GLibMainQueue>(GLibMainQueue::Options{.now = [&] {
    if (!queue_.isMain()) asked.release();
    return 0;
  }});
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

TEST_F(GLibMainQueueTest, TellsOnceThatTasksWaitInVain) {
  const auto noted = makeTimedQueue();
  noted->asyncAfter(1h, record("much later"));
  noted->async(record("first"));
  for (const auto passed : {0s, 4s}) {
    now_ += passed;
    noted->async(record("in time"));
    EXPECT_THAT(log_->lines(), IsEmpty());
  }
  now_ += 1s;
  noted->async(record("too late"));
  now_ += 1h;
  noted->async(record("again"));
  EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr("waited for the main thread for 5 s")));

  // A thread that is there anyway looks as often as it has to, and only until somebody serves.
  const auto watched = makeTimedQueue();
  const auto look = watched->watch();
  EXPECT_EQ(look(), TimeInterval::max());
  watched->asyncAfter(10s, record("watched"));
  EXPECT_EQ(look(), 15s);
  now_ += 14s;
  EXPECT_EQ(look(), 1s);
  now_ += 1s;
  EXPECT_EQ(look(), TimeInterval::max());
  EXPECT_EQ(log_->lines().size(), 2U);

  auto served = makeTimedQueue();
  served->async(record("served"));
  const auto lookAtServed = served->watch();
  EXPECT_FALSE(*runMainTasks(1h));
  served->async(record("held up"));
  now_ += 1h;
  EXPECT_EQ(lookAtServed(), TimeInterval::max());
  served.reset();
  EXPECT_EQ(lookAtServed(), TimeInterval::max());
  EXPECT_EQ(log_->lines().size(), 2U);
}

/// Lets go of a semaphore at each line.
struct SignallingLog : Log {
  void write(std::string_view) override { written.release(); }
  std::counting_semaphore<> written{0};
};

TEST_F(GLibMainQueueTest, AThreadThatWaitsInVainSaysSo) {
  const auto log = std::make_shared<SignallingLog>();
  GLibMainQueue queue({.log = log, .patience = 0s});
  std::thread other([&] { queue.sync([] { quitMainLoop(); }); });
  log->written.acquire();
  runMainLoop();
  other.join();
}

bool isReadable(int descriptor, int timeout) {
  pollfd waiting{descriptor, POLLIN, 0};
  return poll(&waiting, 1, timeout) == 1;
}

TEST_F(GLibMainQueueTest, AnyLoopRunsWhatIsDueWhenTheDescriptorSaysSo) {
  auto queue = makeTimedQueue();
  queue->asyncAfter(1h, record("late"));
  const int descriptor = *mainTasksDescriptor();
  EXPECT_EQ(*mainTasksDescriptor(), descriptor);
  EXPECT_FALSE(isReadable(descriptor, 0));
  queue->async([&, descriptor] {
    calls_.emplace_back("first");
    EXPECT_EQ(runMainTasks(1h).error(), MainThreadError::insideTask);
    EXPECT_FALSE(isReadable(descriptor, 0)) << "a loop inside a task would never rest";
    // As a dialog's loop would.
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    calls_.emplace_back("end of the first");
  });
  queue->async(record("second"));
  queue_.async(record("of another queue"));
  std::thread([] { EXPECT_EQ(runMainTasks(1h).error(), MainThreadError::otherThread); }).join();

  EXPECT_TRUE(isReadable(descriptor, -1));
  EXPECT_TRUE(*runMainTasks(0ms)) << "some that are due are left";
  EXPECT_THAT(calls_, ElementsAre("of another queue"));
  EXPECT_TRUE(isReadable(descriptor, -1));
  EXPECT_TRUE(*runMainTasks(0ms));
  EXPECT_TRUE(isReadable(descriptor, -1)) << "what was held up is due again";
  EXPECT_FALSE(*runMainTasks(std::chrono::milliseconds::max()));
  EXPECT_THAT(calls_, ElementsAre("of another queue", "first", "end of the first", "second"));
  EXPECT_FALSE(isReadable(descriptor, 0));

  now_ += 1h;
  // The queue looks at the time when it is given something.
  queue->asyncAfter(1h, record("dropped"));
  EXPECT_TRUE(isReadable(descriptor, -1));
  EXPECT_FALSE(*runMainTasks(1h));
  EXPECT_EQ(calls_.back(), "late");
  queue->async(record("dropped"));
  queue.reset();
  EXPECT_FALSE(isReadable(descriptor, 0));
}

TEST_F(GLibMainQueueTest, TheLoopRefusesAnotherThread) {
  const auto queue = makeTimedQueue();
  std::thread(runMainLoop).join();
  std::thread([] { EXPECT_EQ(claimMainThread(), MainThreadError::otherThread); }).join();
  EXPECT_EQ(claimMainThread(), std::nullopt) << "it is the main one already";
  EXPECT_THAT(log_->lines(),
              ElementsAre("runMainLoop: " + std::string(message(MainThreadError::otherThread))));
}

/// Claims a thread of its own, which runs the task while the initial thread runs GLib's loop.
void runOnAClaimedThread() {
  const auto log = std::make_shared<RecordingLog>();
  std::binary_semaphore isClaimed(0), isRefused(0);
  std::thread::id ran;
  std::thread claiming([&] {
    if (claimMainThread()) _exit(1);
    isClaimed.release();
    isRefused.acquire();
    if (!runMainTasks(1h)) _exit(2);
  });
  isClaimed.acquire();
  rememberMainThread();
  GLibMainQueue queue({.log = log});
  queue.async([&] { ran = std::this_thread::get_id(); });
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  if (queue.isMain() || log->lines().size() != 1 || ran != std::thread::id()) _exit(3);
  const auto claimed = claiming.get_id();
  isRefused.release();
  claiming.join();
  _exit(ran == claimed && claimMainThread() == MainThreadError::otherThread ? 0 : 4);
}

TEST(MainThreadTest, OfAnApplicationIsTheOneThatItClaimsFirst) {
  const test::DeathTest inAProcessOfItsOwn;
  EXPECT_EXIT(runOnAClaimedThread(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ovinta::platform::linuxos
