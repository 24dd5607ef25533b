#include "platform/simulation/time/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// By the wall; far more than any of the tests needs.
constexpr std::chrono::milliseconds kLimit = 30s;

class VirtualTimeTest : public ::testing::Test {
 protected:
  TimeInterval passed() const { return time.now() - kStart; }
  auto note(int number) {
    return [this, number] { notes.emplace_back(number, passed()); };
  }

  static constexpr Date kStart{1'000'000s};
  VirtualTime time{kStart};
  std::shared_ptr<MainQueue> queue = time.mainQueue();
  std::vector<std::pair<int, TimeInterval>> notes;
};

TEST_F(VirtualTimeTest, AdvanceRunsEachTaskAtItsDueTime) {
  queue->asyncAfter(1s, [this] {
    note(1)();
    queue->asyncAfter(1s, note(2));
    queue->asyncAfter(9s, note(4));
  });
  queue->asyncAfter(3s, note(3));
  queue->asyncAfter(3s + 1us, note(9));
  time.advance(3s);
  EXPECT_THAT(notes, ElementsAre(std::pair(1, 1s), std::pair(2, 2s), std::pair(3, 3s)));
  EXPECT_EQ(passed(), 3s);
  EXPECT_EQ(time.clock()->now(), kStart + 3s);
  EXPECT_EQ(time.pendingTaskCount(), 2u);
  time.advance(1min);
  EXPECT_THAT(notes.back(), std::pair(4, TimeInterval(10s)));
}

TEST_F(VirtualTimeTest, WaitUntilEndsWithTheConditionOrTheLimit) {
  queue->asyncAfter(1s, note(9));
  std::jthread other([&, hold = time.hold()] { queue->async(note(1)); });
  EXPECT_TRUE(time.waitUntil([&] { return notes.size() == 1; }, kLimit));
  EXPECT_FALSE(time.waitUntil([] { return false; }, 1ms));
  // A chain of tasks without end does not outlast the limit either.
  std::function<void()> again = [&] { queue->async(again); };
  again();
  EXPECT_FALSE(time.waitUntil([] { return false; }, 1ms));
  EXPECT_EQ(passed(), 0s);
}

// `shared` has no lock: the thread sanitizer sees it if work and tasks ever overlap.
TEST_F(VirtualTimeTest, WorkTakesTurnsWithTheMainThread) {
  constexpr int kRounds = 100;
  std::vector<int> shared;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([&, hold = time.hold()] {
      for (int i = 0; i < kRounds; ++i) {
        hold->runInTurn([&] {
          shared.push_back(0);
          queue->async([&] { shared.push_back(1); });
          queue->async([&] { shared.push_back(2); });
          if (i % 10 == 0) queue->sync([&] { shared.push_back(3); });
          hold->runInTurn([&] { shared.push_back(4); });
        });
      }
    });
  }
  shared.push_back(-1);
  time.advance(1s);

  // After each work its tasks, before the next one.
  ASSERT_EQ(shared.size(), 1u + 3 * (4 * kRounds + kRounds / 10));
  for (std::size_t i = 1; i < shared.size();) {
    const bool waits = shared.at(i + 3) == 3;
    const auto expected = waits ? std::vector{0, 1, 2, 3, 4} : std::vector{0, 4, 1, 2};
    ASSERT_EQ(std::vector(shared.begin() + i, shared.begin() + i + expected.size()), expected);
    i += expected.size();
  }
}

TEST(VirtualTimeLifeTest, QueueAndHoldsMayOutliveIt) {
  auto time = std::make_unique<VirtualTime>(Date{});
  const auto queue = time->mainQueue();
  const auto clock = time->clock();
  const auto makeHold = time->holdMaker();
  auto captured = std::make_shared<int>();
  const std::weak_ptr watched = captured;
  // A task that holds on to its own queue must not keep it alive for ever.
  queue->async([queue, captured = std::move(captured)] {});
  time->advance(-1s);
  EXPECT_TRUE(watched.expired());
  queue->async([captured = std::make_shared<int>(), queue] {});
  time.reset();

  queue->async([] { FAIL() << "ran after the end"; });
  EXPECT_EQ(clock->now(), Date{});
  bool ran = false;
  std::jthread([&] { makeHold()->runInTurn([&] { ran = true; }); }).join();
  EXPECT_TRUE(ran);
}

TEST(VirtualTimeDeathTest, IsDrivenByTheMainThreadOutsideOfTasks) {
  const auto nested = [] {
    VirtualTime time{Date{}};
    time.mainQueue()->async([&] { time.runUntilIdle(); });
    time.advance(1s);
  };
  const auto foreign = [] {
    VirtualTime time{Date{}};
    std::jthread([&] { time.advance(1s); }).join();
  };
  EXPECT_DEATH(nested(), "inside a task");
  EXPECT_DEATH(foreign(), "main thread only");
}

}  // namespace
}  // namespace ovinta::platform::simulation
