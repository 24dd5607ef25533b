// Random histories of a device with delivery on, each checked for what delivery promises.
#include <gtest/gtest.h>

#include "tests/platform/portable/delivery/DeliveryWorld.h"

namespace ovinta::platform::test {
namespace {

using Way = EventService::Way;

constexpr std::int64_t kOrders = 3;

/// Lives through one history, and knows what the service has to have learned in the end.
class History {
 public:
  explicit History(std::uint64_t seed) : world_(seed), random_(seed) {}

  void run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
      step();
      check();
    }
    comeToRest();
  }

  /// The same with the process ending at the write or send of that number; false when there are not
  /// so many.
  bool runUntilPoint(int point, int steps) {
    hasWorkingDisk_ = true;
    fate().left = point;
    bool hasEnded = false;
    for (int i = 0; i < steps; ++i) {
      step();
      if (!fate().isDead) continue;
      hasEnded = true;
      restart();
    }
    fate().left = 0;
    comeToRest();
    return hasEnded;
  }

 private:
  std::uint64_t below(std::uint64_t limit) { return random_() % limit; }

  void step() {
    switch (below(12)) {
      case 0:
        return world_.setWay(static_cast<Way>(below(6)));
      case 1:
        return world_.setWay(Way::open);
      case 2:
        return restart();
      case 3:
        return below(4) == 0 ? changeCustomer() : makeEvent();
      case 4:
        world_.clock->offset += std::chrono::minutes(below(40)) - 20min;
        return;
      case 5:
        world_.outbox->isBroken = !hasWorkingDisk_ && below(3) == 0;
        return;
      case 6:
      case 7:
        return pass(std::chrono::seconds(below(2000)));
      case 8:
        return pass(std::chrono::seconds(below(10)));
      default:
        return makeEvent();
    }
  }

  void makeEvent() {
    const auto order = static_cast<std::int64_t>(below(kOrders)) + 1;
    const bool isPosition = below(2) == 0;
    const auto sequence = ++sequence_;
    ++madeHere_;
    world_.send(
        eventRequest(order, isPosition ? "location_update" : "state_change", sequence, customer_));
    // One that was being handed over when the process ended is promised nothing.
    if (!fate().isDead) (isPosition ? positions_ : steps_)[sequence] = order;
  }

  void changeCustomer() {
    steps_.clear();  // What has not arrived by now need not.
    positions_.clear();
    world_.signOut();
    if (fate().isDead) restart();
    customer_ = below(2) == 0 ? "alice" : "bob";
    world_.signIn(customer_);
  }

  void restart() {
    // What a failing disk has not taken is lost with the process, and what it has not given up
    // comes back.
    if (world_.outbox->isBroken || world_.services.delivery->account().storageFailure) {
      steps_.clear();
      positions_.clear();
      unordered_ = sequence_;
    }
    world_.quit();
    fate().isDead = false;
    endedBefore_ = world_.ended.size();
    madeHere_ = world_.outbox->kept().size();
    world_.launch();
  }

  void pass(std::chrono::seconds time) { world_.time.advance(time); }

  void check() {
    const auto account = world_.account();
    EXPECT_TRUE(account.isBalanced()) << summary(account);
    EXPECT_EQ(account.made, madeHere_) << summary(account);
    for (const int count : world_.ended) EXPECT_LE(count, 1);
  }

  void comeToRest() {
    world_.outbox->isBroken = false;
    world_.setWay(Way::open);
    pass(2h);
    // The outbox catches up with the next event on what it could not be told before.
    makeEvent();
    pass(1min);
    check();
    EXPECT_EQ(world_.account().waiting, 0U) << summary(world_.account());
    EXPECT_TRUE(world_.outbox->kept().empty());
    EXPECT_FALSE(world_.service.hasEmptyField) << "a request without its tokens";
    for (std::size_t i = endedBefore_; i < world_.ended.size(); ++i) {
      EXPECT_EQ(world_.ended[i], 1) << "completions of request " << i;
    }
    checkEffects();
  }

  void checkEffects() {
    std::map<std::int64_t, std::int64_t> last;
    for (const auto& [orderID, sequence] : world_.service.effects) {
      steps_.erase(sequence);
      if (sequence <= unordered_) continue;
      EXPECT_LT(std::exchange(last[orderID], sequence), sequence) << "order " << orderID;
    }
    EXPECT_TRUE(steps_.empty()) << "a step that the service has not learned";
    std::map<std::int64_t, std::int64_t> newest;
    for (const auto& [sequence, orderID] : positions_) newest[orderID] = sequence;
    for (const auto& [orderID, sequence] : newest) {
      EXPECT_GE(last[orderID], sequence) << "the newest position of order " << orderID;
    }
  }

  Fate& fate() { return world_.outbox->fate; }

  DeliveryWorld world_;
  std::mt19937_64 random_;
  std::string customer_ = "alice";
  std::int64_t sequence_ = 0;
  /// The events that have to arrive, and the order of each.
  std::map<std::int64_t, std::int64_t> steps_;
  std::map<std::int64_t, std::int64_t> positions_;
  std::uint64_t madeHere_ = 0;
  std::size_t endedBefore_ = 0;
  bool hasWorkingDisk_ = false;
  /// The events up to that one may arrive in any order.
  std::int64_t unordered_ = 0;
};

/// 10,000 histories, in parts.
class DeliveryHistoriesTest : public testing::TestWithParam<int> {};

TEST_P(DeliveryHistoriesTest, EventsArriveOnceAndInOrderWhateverHappens) {
  constexpr int kHistories = 2500;
  for (int i = 1; i <= kHistories && !HasFailure(); ++i) {
    const int seed = GetParam() * kHistories + i;
    SCOPED_TRACE("seed " + std::to_string(seed));
    History(static_cast<std::uint64_t>(seed)).run(40);
  }
}

INSTANTIATE_TEST_SUITE_P(Parts, DeliveryHistoriesTest, testing::Range(0, 4));

TEST(DeliveryHistoryTest, AProcessMayEndAtEachWriteAndSend) {
  constexpr int kHistories = 20;
  int points = 0;
  for (int seed = 1; seed <= kHistories; ++seed) {
    for (int point = 1; !HasFailure(); ++point) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", point " + std::to_string(point));
      if (!History(static_cast<std::uint64_t>(seed)).runUntilPoint(point, 40)) break;
      ++points;
    }
  }
  EXPECT_GT(points, 300);
  RecordProperty("points", points);
}

}  // namespace
}  // namespace ovinta::platform::test
