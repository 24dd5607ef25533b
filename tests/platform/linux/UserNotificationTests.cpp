#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>

#include "platform/linux/StoredUserNotificationCenter.h"
#include "platform/linux/notifications/NotifyAgent.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedLocation.h"
#include "platform/simulation/VirtualTime.h"
#include "platform/standard/Standard.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/Files.h"
#include "tests/support/NotificationsDouble.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using simulation::kSite;
using simulation::northOfSite;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

UserNotificationRequest requestFor(const char* identifier) {
  return {identifier,
          {"Near", "5 < 6 & more", NotificationSound::defaultSound, {{"site", identifier}}},
          {{kSite, 100, identifier, true, false}, false}};
}

TEST(NotificationStoreTest, WhatHappensToAFiringRequestMeanwhileStands) {
  const test::TemporaryDirectory directory;
  const auto file = directory.path() / "Notifications.sqlite";
  test::writeFile(file, std::string(5000, 'x'));
  const auto log = std::make_shared<simulation::RecordingLog>();
  NotificationStore store(file, log), other(file, log);
  const auto fire = [&] {
    store.put(requestFor("one"));
    std::vector<NotificationStore::Firing> firing;
    for (const double metres : {500, 0}) {
      firing = store.cross({northOfSite(metres), 5}, simulation::Sphere());
    }
    EXPECT_THAT(other.cross({kSite, 5}, simulation::Sphere()), IsEmpty());
    EXPECT_THAT(other.pending(), IsEmpty());
    return firing.at(0);
  };
  const auto removed = fire();
  EXPECT_THAT(log->lines(), ElementsAre(HasSubstr("Notifications.sqlite.corrupt-1")));
  other.remove({"one"});
  store.settle(removed, false);
  EXPECT_THAT(store.pending(), IsEmpty());
  const auto replaced = fire();
  other.put(requestFor("one"));
  store.settle(replaced, true);
  EXPECT_THAT(store.pending(), SizeIs(1));
  store.settle(fire(), false);
  EXPECT_THAT(other.pending(), ElementsAre(requestFor("one")));
}

class UserNotificationTest : public testing::Test {
 protected:
  using Center = StoredUserNotificationCenter;

  UserNotificationTest() {
    services_.log = log_;
    services_.mainQueue = time_.mainQueue();
    services_.operationQueues = standard::makeOperationQueueFactory();
    services_.notificationCenter = standard::makeNotificationCenter();
    services_.geodesy = std::make_shared<simulation::Sphere>();
    services_.location = location_;
  }

  std::shared_ptr<dbus::Bus> makeBus() {
    return std::make_shared<dbus::Bus>(daemon_.address(), time_.mainQueue(), log_);
  }

  std::unique_ptr<Center> makeCenter(std::optional<AgentRegistry> agents = {}) {
    return std::make_unique<Center>(
        services_, makeBus(),
        Center::Setup{"org.example.app", file_, agents, [this](const Dictionary& userInfo) {
                        clicked_.push_back(*find<std::string>(userInfo, "site"));
                      }});
  }

  template <class Condition>
  void waitUntil(Condition condition) {
    ASSERT_TRUE(time_.waitUntil(condition, 10s));
  }

  /// After all that was asked of the centre so far.
  std::vector<std::string> pendingOf(Center& center) {
    std::atomic<bool> isAnswered = false;
    std::vector<std::string> identifiers;
    time_.runUntilIdle();
    center.getPendingNotificationRequests([&](const auto& requests) {
      for (const auto& request : requests) identifiers.push_back(request.identifier);
      isAnswered = true;
    });
    time_.waitUntil([&] { return isAnswered.load(); }, 10s);
    time_.runUntilIdle();
    return identifiers;
  }

  void waitForPending(Center& center, std::size_t count) {
    const auto found = std::make_shared<std::atomic<std::size_t>>(count + 1);
    waitUntil([&] {
      center.getPendingNotificationRequests(
          [found](const auto& requests) { *found = requests.size(); });
      return *found == count;
    });
  }

  void moveTo(double metresNorth) {
    location_->deliver({.coordinate = northOfSite(metresNorth), .horizontalAccuracy = 5});
  }

  /// Goes out of the region and in, and lets the centre see both.
  std::vector<std::string> enter(Center& center) {
    for (const double metres : {500, 0}) {
      moveTo(metres);
      pendingOf(center);
    }
    return pendingOf(center);
  }

  void waitForShown(std::size_t count) {
    waitUntil([&] { return desktop_.shown().size() >= count; });
    EXPECT_THAT(desktop_.shown(), SizeIs(count));
  }

  test::PrivateBus daemon_;
  test::TemporaryDirectory directory_;
  const std::filesystem::path file_ = directory_.path() / "app" / "Notifications.sqlite";
  test::NotificationsDouble desktop_{daemon_};
  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<simulation::RecordingLog> log_ = std::make_shared<simulation::RecordingLog>();
  std::shared_ptr<simulation::SimulatedLocation> location_ =
      std::make_shared<simulation::SimulatedLocation>(time_.mainQueue(),
                                                      std::make_shared<simulation::Sphere>());
  Services services_;
  std::vector<std::string> clicked_;
};

TEST_F(UserNotificationTest, FiresOnceOnEntryAndTellsOfTheClick) {
  const auto center = makeCenter();
  EXPECT_THAT(pendingOf(*center), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_FALSE(location_->isUpdating());
  center->add(requestFor("one"), nullptr);
  EXPECT_THAT(pendingOf(*center), ElementsAre("one"));
  EXPECT_TRUE(location_->isUpdating());
  EXPECT_THAT(enter(*center), IsEmpty());
  waitForShown(1);
  const auto shown = desktop_.shown().front();
  EXPECT_EQ(shown.application, "org.example.app");
  EXPECT_EQ(shown.title, "Near");
  EXPECT_EQ(shown.body, "5 &lt; 6 &amp; more");
  EXPECT_EQ(dbus::read<Glib::ustring>(shown.hints, "sound-name"), "message-new-instant");
  waitUntil([&] { return !location_->isUpdating(); });
  enter(*center);
  desktop_.click(shown);
  desktop_.click(shown);
  waitUntil([&] { return !clicked_.empty(); });
  EXPECT_THAT(clicked_, ElementsAre("one"));
  waitForShown(1);
}

TEST_F(UserNotificationTest, FollowsTheRequestAndWhatTheServiceCan) {
  desktop_.setCapabilities({"body"});
  const auto center = makeCenter();
  auto leaving = requestFor("leaving");
  leaving.content.sound = NotificationSound::none;
  leaving.trigger.region.notifyOnEntry = false;
  leaving.trigger.region.notifyOnExit = true;
  leaving.trigger.repeats = true;
  center->add(leaving, nullptr);
  EXPECT_THAT(enter(*center), ElementsAre("leaving"));
  EXPECT_THAT(desktop_.shown(), IsEmpty());
  EXPECT_THAT(enter(*center), ElementsAre("leaving"));
  EXPECT_THAT(enter(*center), ElementsAre("leaving"));
  waitForShown(2);
  const auto shown = desktop_.shown().front();
  EXPECT_EQ(shown.body, "5 < 6 & more");
  EXPECT_THAT(shown.actions, IsEmpty());
  EXPECT_EQ(dbus::read<bool>(shown.hints, "suppress-sound"), true);
}

TEST_F(UserNotificationTest, ArmedInsideItFiresOnTheNextEntry) {
  const auto center = makeCenter();
  auto elsewhere = requestFor("elsewhere");
  elsewhere.trigger.region.center = northOfSite(9000);
  center->add(elsewhere, nullptr);
  pendingOf(*center);
  moveTo(0);
  pendingOf(*center);
  center->add(requestFor("one"), nullptr);
  EXPECT_THAT(pendingOf(*center), ElementsAre("elsewhere", "one"));
  moveTo(20);
  EXPECT_THAT(pendingOf(*center), ElementsAre("elsewhere", "one"));
  location_->deliver({.coordinate = northOfSite(500), .horizontalAccuracy = 17'000});
  moveTo(0);
  EXPECT_THAT(pendingOf(*center), ElementsAre("elsewhere", "one"));
  EXPECT_THAT(enter(*center), ElementsAre("elsewhere"));
  waitForShown(1);
}

TEST_F(UserNotificationTest, KnowsAfterARestartWhatIsPendingAndOnWhichSide) {
  auto center = makeCenter();
  const auto whole = requestFor("whole");
  std::vector<bool> accepted;
  const auto note = [&](const auto& error) { accepted.push_back(!error); };
  for (const auto* identifier : {"a", "b", "a", "\xFF"}) center->add(requestFor(identifier), note);
  center->add(whole, nullptr);
  center->removePendingNotificationRequests({"b", "unknown"});
  pendingOf(*center);
  EXPECT_THAT(accepted, ElementsAre(true, true, true, false));
  EXPECT_EQ(test::modeOf(file_), 0600U);
  moveTo(500);
  EXPECT_THAT(pendingOf(*center), ElementsAre("a", "whole"));
  center = makeCenter();
  EXPECT_THAT(pendingOf(*center), ElementsAre("a", "whole"));
  moveTo(0);
  pendingOf(*center);
  waitForShown(2);
}

TEST_F(UserNotificationTest, StaysPendingWithoutAServiceUntilTheNextEntry) {
  desktop_.vanish();
  const auto center = makeCenter();
  center->add(requestFor("one"), nullptr);
  for (int i = 0; i < 2; ++i) {
    enter(*center);
    waitForPending(*center, 1);
  }
  const auto lines = log_->lines();
  EXPECT_EQ(std::ranges::count(lines, "org.freedesktop.Notifications is not on the bus"), 1);
  desktop_.appear();
  EXPECT_THAT(enter(*center), IsEmpty());
  waitForShown(1);
}

TEST_F(UserNotificationTest, OfTwoProcessesWithOneStoreOnlyOneFires) {
  const auto center = makeCenter(), other = makeCenter();
  constexpr std::size_t kRounds = 20;
  for (std::size_t round = 1; round <= kRounds; ++round) {
    center->add(requestFor("one"), nullptr);
    pendingOf(*center);
    // A restart of the second, which alone has it look.
    other->removePendingNotificationRequests({"unknown"});
    pendingOf(*other);
    for (const double metres : {500, 0}) {
      moveTo(metres);
      pendingOf(*center);
      pendingOf(*other);
    }
    waitForShown(round);
  }
  EXPECT_THAT(pendingOf(*other), IsEmpty());
}

class NotifyAgentTest : public UserNotificationTest {
 protected:
  void startAgent() {
    agent_ = std::make_unique<NotifyAgent>(services_, makeBus(), registry_, [this] { ++ends_; });
  }

  const AgentRegistry registry_{directory_.path() / "agent"};
  int ends_ = 0;
  std::unique_ptr<NotifyAgent> agent_;
};

TEST_F(NotifyAgentTest, FiresWhileTheApplicationDoesNotRunAndEndsThen) {
  auto center = makeCenter(registry_);
  center->add(requestFor("one"), nullptr);
  const std::string line =
      "No ovinta-notify-agent: notifications fire only while the application runs";
  waitUntil([&] { return std::ranges::count(log_->lines(), line) == 1; });
  EXPECT_EQ(test::modeOf(directory_.path() / "agent"), 0700U);
  for (const auto& entry : std::filesystem::directory_iterator(directory_.path() / "agent")) {
    EXPECT_EQ(test::modeOf(entry.path()), 0600U);
  }
  startAgent();
  center = nullptr;
  waitUntil([&] { return location_->isUpdating(); });
  moveTo(500);
  moveTo(0);
  waitForShown(1);
  EXPECT_EQ(ends_, 0);
  desktop_.click(desktop_.shown().front());
  waitUntil([&] { return ends_ > 0; });
  EXPECT_THAT(clicked_, IsEmpty());
  center = makeCenter(registry_);
  waitUntil([&] { return !clicked_.empty(); });
  EXPECT_THAT(clicked_, ElementsAre("one"));
  EXPECT_EQ(ends_, 1);
}

TEST_F(NotifyAgentTest, LeavesARunningApplicationAloneAndEndsWhenItIsDisarmed) {
  const auto center = makeCenter(registry_);
  center->add(requestFor("one"), nullptr);
  waitUntil([&] { return location_->isUpdating(); });
  startAgent();
  center->add(requestFor("two"), nullptr);
  pendingOf(*center);
  EXPECT_EQ(ends_, 0);
  center->removePendingNotificationRequests({"one", "two"});
  waitUntil([&] { return ends_ > 0; });
  EXPECT_FALSE(location_->isUpdating());
}

TEST_F(NotifyAgentTest, EndsWithNothingToDoWithASecondAgentAndWithoutABus) {
  startAgent();
  waitUntil([&] { return ends_ == 1; });

  const auto center = makeCenter(registry_);
  center->add(requestFor("one"), nullptr);
  waitUntil([&] { return location_->isUpdating(); });
  startAgent();
  BusDaemon names(makeBus());
  bool isThere = false;
  waitUntil([&] {
    names.listNames([&](const auto& found) { isThere = found.contains(kAgentBusName); });
    return isThere;
  });
  EXPECT_EQ(ends_, 1);
  const NotifyAgent second(services_, makeBus(), registry_, [this] { ends_ = 20; });
  waitUntil([&] { return ends_ == 20; });
  daemon_.stop();
  waitUntil([&] { return ends_ == 21; });
}

}  // namespace
}  // namespace ovinta::platform::linux
