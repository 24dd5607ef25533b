#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/portable/Portable.h"

namespace ovinta::platform {
namespace {

using testing::ElementsAre;

constexpr NotificationName kFirst{"first"};
constexpr NotificationName kSecond{"second"};

class NotificationCenterTest : public testing::Test {
 protected:
  std::unique_ptr<NotificationObserver> record(NotificationName name, std::string mark) {
    return center_->addObserver(name, [this, mark](const auto&) { calls_.push_back(mark); });
  }

  std::shared_ptr<NotificationCenter> center_ = portable::makeNotificationCenter();
  std::vector<std::string> calls_;
};

TEST_F(NotificationCenterTest, CallsTheObserversOfTheNameInOrderWhileTheirTokensLive) {
  const auto a = record(kFirst, "a");
  auto b = record(kFirst, "b");
  const auto other = record(kSecond, "other");
  const auto c = center_->addObserver(kFirst, [this](const Notification& notification) {
    calls_.push_back(*notification.objectAs<std::string>());
    EXPECT_EQ(notification.objectAs<int>(), nullptr);
  });
  center_->post({kFirst, std::string("object")});
  b.reset();
  center_->post(
      {NotificationName{std::string_view("first and more").substr(0, 5)}, std::string("again")});
  EXPECT_THAT(calls_, ElementsAre("a", "b", "object", "a", "again"));
}

TEST_F(NotificationCenterTest, HandlersMayPostAddAndRemove) {
  std::unique_ptr<NotificationObserver> self, next, added;
  const std::string text(100, 'x');
  self = center_->addObserver(kFirst, [&, text](const auto&) {
    self.reset();  // The handler and what it captured stay alive to its end.
    next.reset();
    added = record(kFirst, "added");
    center_->post({kSecond, {}});
    calls_.push_back("self " + std::to_string(text.size()));
  });
  next = record(kFirst, "removed before its turn");
  const auto second = record(kSecond, "nested");
  center_->post({kFirst, {}});
  EXPECT_THAT(calls_, ElementsAre("nested", "self 100"));
  center_->post({kFirst, {}});
  EXPECT_THAT(calls_, ElementsAre("nested", "self 100", "added"));
}

TEST_F(NotificationCenterTest, TokensMayOutliveTheCenter) {
  const auto token = record(kFirst, "never");
  center_.reset();
}

TEST_F(NotificationCenterTest, ThreadsMayPostAddAndRemoveAtTheSameTime) {
  std::atomic<int> steady = 0;
  const auto token = center_->addObserver(kFirst, [&](const auto&) { ++steady; });
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int round = 0; round < 200; ++round) {
        const auto called = std::make_shared<std::atomic<bool>>(false);
        const auto own = center_->addObserver(kFirst, [called](const auto&) { *called = true; });
        center_->post({kFirst, {}});
        EXPECT_TRUE(*called);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(steady, 800);
}

}  // namespace
}  // namespace ovinta::platform
