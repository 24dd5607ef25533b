#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/NotificationCenter.h"

namespace ovinta::platform::contract {

/// What every notification centre promises. A rig is a fixture with `center_`, a shared pointer.
template <class Rig>
class NotificationCenterContract : public Rig {
 protected:
  static constexpr NotificationName kFirst{"first"};
  static constexpr NotificationName kSecond{"second"};

  std::unique_ptr<NotificationObserver> record(NotificationName name, std::string mark) {
    return this->center_->addObserver(name, [this, mark](const auto&) { calls_.push_back(mark); });
  }

  std::vector<std::string> calls_;
};
TYPED_TEST_SUITE_P(NotificationCenterContract);

using testing::ElementsAre;

TYPED_TEST_P(NotificationCenterContract, CallsTheObserversOfTheNameInOrderWhileTheirTokensLive) {
  const auto a = this->record(this->kFirst, "a");
  auto b = this->record(this->kFirst, "b");
  const auto other = this->record(this->kSecond, "other");
  const auto c = this->center_->addObserver(this->kFirst, [this](const Notification& notification) {
    this->calls_.push_back(*notification.objectAs<std::string>());
    EXPECT_EQ(notification.objectAs<int>(), nullptr);
  });
  this->center_->post({this->kFirst, std::string("object")});
  EXPECT_THAT(this->calls_, ElementsAre("a", "b", "object"));
  b.reset();
  this->center_->post(
      {NotificationName{std::string_view("first and more").substr(0, 5)}, std::string("again")});
  EXPECT_THAT(this->calls_, ElementsAre("a", "b", "object", "a", "again"));
}

TYPED_TEST_P(NotificationCenterContract, HandlersMayPostAddAndRemove) {
  std::unique_ptr<NotificationObserver> self, next, added;
  const std::string text(100, 'x');
  self = this->center_->addObserver(this->kFirst, [&, text](const auto&) {
    self.reset();  // The handler and what it captured stay alive to its end.
    next.reset();
    added = this->record(this->kFirst, "added");
    this->center_->post({this->kSecond, {}});
    this->calls_.push_back("self " + std::to_string(text.size()));
  });
  next = this->record(this->kFirst, "removed before its turn");
  const auto second = this->record(this->kSecond, "nested");
  this->center_->post({this->kFirst, {}});
  EXPECT_THAT(this->calls_, ElementsAre("nested", "self 100"));
  this->center_->post({this->kFirst, {}});
  EXPECT_THAT(this->calls_, ElementsAre("nested", "self 100", "added"));
}

TYPED_TEST_P(NotificationCenterContract, TokensMayOutliveTheCenter) {
  const auto token = this->record(this->kFirst, "never");
  this->center_.reset();
}

TYPED_TEST_P(NotificationCenterContract, ThreadsMayPostAddAndRemoveAtTheSameTime) {
  std::atomic<int> steady = 0;
  const auto token = this->center_->addObserver(this->kFirst, [&](const auto&) { ++steady; });
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int round = 0; round < 200; ++round) {
        const auto poster = std::this_thread::get_id();
        const auto onPoster = std::make_shared<std::atomic<int>>(0);
        const auto own = this->center_->addObserver(this->kFirst, [=](const auto&) {
          if (std::this_thread::get_id() == poster) ++*onPoster;
        });
        this->center_->post({this->kFirst, {}});
        EXPECT_EQ(*onPoster, 1);
      }
    });
  }
  threads.clear();
  EXPECT_EQ(steady, 800);
}

REGISTER_TYPED_TEST_SUITE_P(NotificationCenterContract,
                            CallsTheObserversOfTheNameInOrderWhileTheirTokensLive,
                            HandlersMayPostAddAndRemove, TokensMayOutliveTheCenter,
                            ThreadsMayPostAddAndRemoveAtTheSameTime);

}  // namespace ovinta::platform::contract
