#include "tests/platform/linux/UserNotificationFixture.h"

#include <algorithm>

#include "platform/linux/notifications/NotifyAgent.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Files.h"
#include "tests/support/GeoClueDouble.h"

namespace ovinta::platform::linux {
namespace {

using simulation::kSite;
using simulation::northOfSite;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

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
  const auto shown = desktop_.shown().at(0);
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
  const auto shown = desktop_.shown().at(0);
  EXPECT_EQ(shown.body, "5 < 6 & more");
  EXPECT_THAT(shown.actions, IsEmpty());
  EXPECT_EQ(dbus::read<bool>(shown.hints, "suppress-sound"), true);
}

TEST_F(UserNotificationTest, ItIsKnownFromTheArmingOnWhetherTheDeviceIsInside) {
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
  moveTo(500);
  pendingOf(*center);
  center->add(requestFor("armed outside"), nullptr);
  pendingOf(*center);
  moveTo(0);
  EXPECT_THAT(pendingOf(*center), ElementsAre("elsewhere"));
  waitForShown(2);
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
  waitUntil([&] {
    return std::ranges::count(log_->lines(), "org.freedesktop.Notifications is not on the bus") ==
           1;
  });
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
  std::unique_ptr<NotifyAgent> makeAgent(std::function<void()> onEnd) {
    return std::make_unique<NotifyAgent>(
        services_,
        [this](PositionSource source) {
          sources_.push_back(source);
          return agentLocation_;
        },
        makeBus(), registry_, std::move(onEnd));
  }

  void startAgent() {
    agent_ = makeAgent([this] { ++ends_; });
  }

  void waitForName(const std::string& name, bool isExpected) {
    BusDaemon names(makeBus());
    bool isThere = !isExpected;
    waitUntil([&] {
      names.listNames([&](const auto& found) { isThere = found.contains(name); });
      return isThere == isExpected;
    });
  }
  void waitForAgent(bool isExpected) { waitForName(kAgentBusName, isExpected); }
  void waitForApplication() {
    waitForName(RegisteredApplication{"org.example.app", file_}.busName(), true);
  }

  /// What the agent alone sees.
  std::shared_ptr<simulation::SimulatedLocation> agentLocation_ =
      std::make_shared<simulation::SimulatedLocation>(time_.mainQueue(), services_.geodesy);
  const AgentRegistry registry_{folder_.path() / "agent"};
  std::vector<PositionSource> sources_;
  int ends_ = 0;
  std::unique_ptr<NotifyAgent> agent_;
};

TEST_F(NotifyAgentTest, FiresWhileTheApplicationDoesNotRunAndEndsThen) {
  registry_.note({"org.example.app", file_});
  auto center = makeCenter(registry_, PositionSource::gpsd);
  center->add(requestFor("one"), nullptr);
  waitUntil([&] {
    return std::ranges::count(log_->lines(), "org.ovinta.NotifyAgent is not on the bus") == 1;
  });
  EXPECT_EQ(test::modeOf(folder_.path() / "agent"), 0700U);
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path() / "agent")) {
    EXPECT_EQ(test::modeOf(entry.path()), 0600U);
  }
  test::ServiceDouble application{
      daemon_, "org.example.app", {{"Activate", "a{sv}"}}, [](const auto&) {
        return dbus::arguments();
      }};
  application.addObject("/org/example/app", "org.freedesktop.Application");
  startAgent();
  center = nullptr;
  waitUntil([&] { return agentLocation_->isUpdating(); });
  for (const double metres : {500, 0}) {
    agentLocation_->deliver({northOfSite(metres), 5});
  }
  waitForShown(1);
  EXPECT_EQ(ends_, 0);
  desktop_.click(desktop_.shown().at(0));
  waitUntil([&] { return ends_ > 0; });
  EXPECT_THAT(sources_, ElementsAre(PositionSource::gpsd));
  EXPECT_EQ(application.count("Activate"), 1U);
  EXPECT_THAT(clicked_, IsEmpty());
  center = makeCenter(registry_);
  waitUntil([&] { return !clicked_.empty(); });
  EXPECT_THAT(clicked_, ElementsAre("one"));
  EXPECT_EQ(ends_, 1);
}

TEST_F(NotifyAgentTest, LeavesARunningApplicationAloneAndEndsWhenItIsDisarmed) {
  const auto center = makeCenter(registry_);
  center->add(requestFor("one"), nullptr);
  waitForApplication();
  startAgent();
  waitForAgent(true);
  center->add(requestFor("two"), nullptr);
  pendingOf(*center);
  EXPECT_FALSE(agentLocation_->isUpdating());
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
  waitForApplication();
  startAgent();
  waitForAgent(true);
  EXPECT_EQ(ends_, 1);
  const auto second = makeAgent([this] { ends_ = 20; });
  waitUntil([&] { return ends_ == 20; });
  daemon_.stop();
  waitUntil([&] { return ends_ == 21; });
}

TEST_F(NotifyAgentTest, TheProgramFollowsThePositionOnceTheApplicationIsGone) {
  test::GeoClueDouble geoclue(daemon_);
  const AgentRegistry registry(folder_.path() / "ovinta-notify-agent/OvintaSDK/Applications");
  auto center = makeCenter(registry);
  center->add(requestFor("one"), nullptr);
  waitForApplication();
  const test::ChildProcess agent(
      {OVINTA_NOTIFY_AGENT},
      {"XDG_DATA_HOME=" + folder_.path().string(), "DBUS_SESSION_BUS_ADDRESS=" + daemon_.address(),
       "DBUS_SYSTEM_BUS_ADDRESS=" + daemon_.address()});
  waitForAgent(true);
  EXPECT_EQ(geoclue.clientCount(), 0U);
  center = nullptr;
  waitUntil([&] { return geoclue.service().count("Start") == 1; });
  for (const double metres : {500, 0}) {
    const Coordinate place = northOfSite(metres);
    geoclue.feed(place.latitude, place.longitude);
  }
  waitForShown(1);
  desktop_.click(desktop_.shown().at(0));
  waitForAgent(false);
  center = makeCenter(registry);
  waitUntil([&] { return !clicked_.empty(); });
}

}  // namespace
}  // namespace ovinta::platform::linux
