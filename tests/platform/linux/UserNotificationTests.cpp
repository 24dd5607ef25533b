#include "tests/platform/linux/UserNotificationFixture.h"

#include <SQLiteCpp/Database.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <system_error>

#include "platform/linux/notifications/NotifyAgent.h"
#include "tests/support/Files.h"
#include "tests/support/GeoClueDouble.h"

namespace ovinta::platform::linuxos {
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
  const auto log = std::make_shared<simulation::RecordingLog>();
  NotificationStore store(file, log), other(file, log);
  const auto fire = [&] {
    store.put(requestFor("one"));
    std::vector<NotificationStore::Firing> firing;
    for (const double metres : {500, 0}) {
      firing = store.cross({northOfSite(metres), 5}, simulation::Sphere());
    }
    EXPECT_THAT(other.cross({kSite, 5}, simulation::Sphere()), IsEmpty());
    EXPECT_THAT(other.pending(), SizeIs(1)) << "somebody has to go on following";
    return firing.at(0);
  };
  const auto removed = fire();
  other.remove({"one"});
  store.settle(removed, false);
  EXPECT_THAT(store.pending(), IsEmpty());
  const auto replaced = fire();
  other.put(requestFor("one"));
  store.settle(replaced, true);
  EXPECT_THAT(store.pending(), SizeIs(1));
  store.settle(fire(), false);
  EXPECT_THAT(other.pending(), ElementsAre(requestFor("one")));
  // A process that has ended while it showed one.
  fire();
  SQLite::Database(file.string(), SQLite::OPEN_READWRITE).exec("UPDATE request SET claimed = 7");
  other.cross({northOfSite(500), 5}, simulation::Sphere());
  EXPECT_THAT(other.cross({kSite, 5}, simulation::Sphere()), SizeIs(1));
  SQLite::Database(file.string(), SQLite::OPEN_READWRITE).exec("UPDATE request SET request = '{}'");
  EXPECT_THAT(other.pending(), IsEmpty()) << "nobody can read it";
  store.addClick(requestFor("one").content.userInfo);
  EXPECT_THAT(other.takeClicks(), ElementsAre(requestFor("one").content.userInfo));
  EXPECT_THAT(store.takeClicks(), IsEmpty()) << "once";
}

TEST(NotificationStoreTest, BeginsAnewWhereTheFileIsDamagedOrGone) {
  const auto log = std::make_shared<simulation::RecordingLog>();
  const test::TemporaryDirectory directory;
  const auto file = directory.path() / "Notifications.sqlite";
  NotificationStore(file, log).put(requestFor("one"));
  std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(4096)
      << std::string(4096, 'x');
  {
    NotificationStore store(file, log);
    EXPECT_THAT(store.pending(), IsEmpty());
    EXPECT_THAT(log->lines(), ElementsAre(HasSubstr("Notifications.sqlite.corrupt-1")));
    store.put(requestFor("two"));
    for (const auto* suffix : {"", "-wal", "-shm"}) {
      std::filesystem::remove(file.string() + suffix);
    }
    EXPECT_THAT(store.pending(), IsEmpty());
    NotificationStore(file, log).put(requestFor("three"));
    EXPECT_THAT(store.pending(), ElementsAre(requestFor("three")));
  }
  SQLite::Database(file.string(), SQLite::OPEN_READWRITE)
      .exec("ALTER TABLE click RENAME COLUMN userInfo TO other");
  EXPECT_THROW(NotificationStore(file, log).pending(), SQLite::Exception);
  EXPECT_EQ(log->lines().size(), 1U) << "a file of another kind is left alone";
}

TEST(AgentRegistryTest, WhatCannotBeWrittenWholeIsRefusedWithTheReason) {
  const test::TemporaryDirectory directory;
  const AgentRegistry registry(directory.path());
  const RegisteredApplication application{"org.example.app", directory.path() / "app.sqlite"};
  // Some bytes are still taken, and only the next call says why not all are.
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{10, before.rlim_max};
  const auto onExcess = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  std::error_code reason;
  try {
    registry.note(application);
  } catch (const std::system_error& error) {
    reason = error.code();
  }
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, onExcess);
  EXPECT_EQ(reason, std::errc::file_too_large);
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST_F(UserNotificationTest, FiresOnceOnEntryAndTellsOfTheClick) {
  EXPECT_THAT(pendingOf(*center_), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_FALSE(location_->isUpdating());
  EXPECT_THAT(arm({requestFor("one")}), ElementsAre("one"));
  EXPECT_TRUE(location_->isUpdating());
  enter();
  waitForShown(1);
  waitForPending({});
  const auto shown = desktop_.shown().at(0);
  EXPECT_EQ(shown.application + ": " + shown.title + ": " + shown.body,
            "org.example.app: Near: 5 &lt; 6 &amp; more");
  EXPECT_EQ(dbus::read<std::string>(shown.hints, "sound-name"), "message-new-instant");
  waitUntil([&] { return !location_->isUpdating(); });
  enter();
  for (int i = 0; i < 2; ++i) desktop_.click(shown);
  waitForClick();
  waitForShown(1);
}

TEST_F(UserNotificationTest, ShowsWhatTheServiceCan) {
  desktop_.setCapabilities({"body"});
  auto silent = requestFor("silent");
  silent.content.sound = NotificationSound::none;
  arm({silent});
  enter();
  waitForShown(1);
  const auto shown = desktop_.shown().at(0);
  EXPECT_EQ(shown.body, "5 < 6 & more");
  EXPECT_THAT(shown.actions, IsEmpty());
  EXPECT_EQ(dbus::read<bool>(shown.hints, "suppress-sound"), true);
}

TEST_F(UserNotificationTest, OneThatIsArmedAfterAGapInThePositionsFiresAtTheNextEntry) {
  arm({requestFor("one")});
  moveTo(500);
  for (const AuthorizationStatus status : {1, 4}) {
    location_->setAuthorizationStatus(status);
    pendingOf(*center_);
  }
  arm({requestFor("after a gap")});
  moveTo(0);
  waitForPending({"after a gap"});
  enter();
  waitForPending({});
  waitForShown(2);
}

TEST_F(UserNotificationTest, EveryPositionOfADeliveryCounts) {
  const auto store =
      std::make_shared<NotificationStoreQueue>(*services_.operationQueues, file_, log_);
  store->enqueue([](NotificationStore& opened) { opened.put(requestFor("one")); });
  const auto trigger = std::make_shared<NotificationTrigger>(
      services_, bus_, "org.example.app", store, NotificationTrigger::Handlers{});
  trigger->didUpdateLocations({{northOfSite(500), 5}, {kSite, 5}});
  waitForShown(1);
}

TEST_F(UserNotificationTest, WhatIsBeingShownCanBeClearedAndReplaced) {
  desktop_.hold();
  arm({requestFor("one"), requestFor("two")});
  enter();
  waitUntil([&] { return desktop_.requestCount() == 2; });
  center_->removePendingNotificationRequests(pendingOf(*center_));
  EXPECT_THAT(arm({requestFor("two")}), ElementsAre("two"));
  desktop_.release(dbus::Failure{"org.example.Busy", "not now"});
  waitUntil([&] { return log_->lines().size() == 1; });
  for (int look = 0; look < 3; ++look) EXPECT_THAT(pendingOf(*center_), ElementsAre("two"));
  desktop_.hold();
  enter();
  waitUntil([&] { return desktop_.requestCount() == 3; });
  desktop_.release();
  waitForPending({});
}

TEST_F(UserNotificationTest, AClickCountsHoweverTheShowingOfOthersEnds) {
  arm({requestFor("other")});
  enter();
  waitForShown(1);
  waitForPending({});
  desktop_.hold();
  arm({requestFor("one")});
  enter();
  waitUntil([&] { return desktop_.requestCount() == 2; });
  desktop_.close(desktop_.shown().at(0));
  passBy(kNotificationsName);
  pendingOf(*center_);
  desktop_.release();
  waitForPending({});
  desktop_.click(desktop_.shown().at(1));
  waitForClick();
}

TEST_F(UserNotificationTest, AServiceThatIsTooSlowCountsAsOneThatShowsAsMostDo) {
  desktop_.setSlow();
  arm({requestFor("one")});
  enter();
  waitForShown(1);
  EXPECT_EQ(desktop_.shown().at(0).body, "5 &lt; 6 &amp; more");
  EXPECT_THAT(desktop_.shown().at(0).actions, SizeIs(2));
  waitUntil([&] { return !location_->isUpdating(); });
  waitForPending({});
}

TEST_F(UserNotificationTest, KnowsAfterARestartWhatIsPendingAndOnWhichSide) {
  std::vector<bool> accepted;
  for (const auto* identifier : {"a", "b", "\xFF"}) {
    center_->add(requestFor(identifier), [&](const auto& error) { accepted.push_back(!error); });
  }
  pendingOf(*center_);
  EXPECT_THAT(moveTo(500), ElementsAre("a", "b"));
  EXPECT_THAT(accepted, ElementsAre(true, true, false));
  EXPECT_EQ(test::modeOf(file_), 0600U);
  center_ = makeCenter();
  EXPECT_THAT(pendingOf(*center_), ElementsAre("a", "b"));
  moveTo(0);
  waitForShown(2);
}

TEST_F(UserNotificationTest, StaysPendingWithoutAServiceUntilTheNextEntry) {
  desktop_.vanish();
  arm({requestFor("one")});
  for (int i = 0; i < 2; ++i) {
    enter();
    // Until nobody tries to show it any more.
    waitUntil([&] {
      SQLite::Database database(file_.string(), SQLite::OPEN_READWRITE);
      return database.execAndGet("SELECT max(claimed) FROM request").getInt64() == 0;
    });
  }
  EXPECT_THAT(log_->lines(), ElementsAre("org.freedesktop.Notifications is not on the bus"));
  desktop_.appear();
  enter();
  waitForPending({});
  waitForShown(1);
}

TEST_F(UserNotificationTest, OfTwoProcessesWithOneStoreOnlyOneFires) {
  const auto other = makeCenter();
  for (std::size_t round = 1; round <= 20; ++round) {
    arm({requestFor("one")});
    // A restart of the second, which alone has it look.
    other->removePendingNotificationRequests({"unknown"});
    pendingOf(*other);
    for (const double metres : {500, 0}) {
      moveTo(metres);
      pendingOf(*other);
    }
    waitForShown(round);
  }
  waitForPending({});
  // One of them has not shown the last one, and sees at a later position that the other is done.
  waitUntil([&] {
    for (const double metres : {30, 0}) location_->deliver({northOfSite(metres), 5});
    return !location_->isUpdating();
  });
}

class NotifyAgentTest : public UserNotificationTest {
 protected:
  std::unique_ptr<NotifyAgent> makeAgent(std::function<void()> onEnd) {
    return std::make_unique<NotifyAgent>(
        services_,
        [this](const RegisteredApplication& application) {
          sources_.push_back(application.positionSource);
          return agentLocation_;
        },
        makeBus(), registry_, std::move(onEnd));
  }

  void startAgent() {
    // There is one at a time.
    agent_ = nullptr;
    agent_ = makeAgent([this] { ++ends_; });
  }

  void waitForName(const std::string& name, bool isExpected) {
    dbus::BusDaemon names(makeBus());
    bool isThere = !isExpected;
    waitUntil([&] {
      names.listNames([&](const auto& found) { isThere = found.contains(name); });
      return isThere == isExpected;
    });
  }
  void waitForAgent(bool isExpected) { waitForName(kAgentBusName, isExpected); }
  /// Starts the application with a request.
  void startApplication(const AgentRegistry& registry) {
    center_ = makeCenter(registry);
    center_->add(requestFor("one"), nullptr);
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
  center_ = makeCenter(registry_, PositionSource::gpsd);
  center_->add(requestFor("one"), nullptr);
  waitForMissing("org.ovinta.NotifyAgent");
  EXPECT_EQ(test::modeOf(folder_.path() / "agent"), 0700U);
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path() / "agent")) {
    EXPECT_EQ(test::modeOf(entry.path()), 0600U);
  }
  std::atomic<bool> isStarting = true;
  test::ServiceDouble application{daemon_,
                                  "org.example.app",
                                  {{"Activate", "a{sv}"}},
                                  [&](const auto&) -> test::ServiceDouble::Answer {
                                    if (isStarting) return test::ServiceDouble::NoAnswer{};
                                    return dbus::arguments();
                                  }};
  application.addObject("/org/example/app", "org.freedesktop.Application");
  startAgent();
  center_ = nullptr;
  waitUntil([&] { return agentLocation_->isUpdating(); });
  for (const double metres : {500, 0}) {
    agentLocation_->deliver({northOfSite(metres), 5});
  }
  waitForShown(1);
  EXPECT_EQ(ends_, 0);
  desktop_.click(desktop_.shown().at(0));
  waitUntil([&] { return application.count("Activate") == 1; });
  for (int look = 0; look < 10; ++look) passBy(kNotificationsName);
  EXPECT_EQ(ends_, 0) << "the click is still being passed on";
  isStarting = false;
  application.answerLate();
  waitUntil([&] { return ends_ > 0; });
  EXPECT_THAT(sources_, ElementsAre(PositionSource::gpsd));
  EXPECT_EQ(application.count("Activate"), 1U);
  EXPECT_THAT(clicked_, IsEmpty());
  center_ = makeCenter(registry_);
  waitForClick();
  EXPECT_EQ(ends_, 1);
}

TEST_F(NotifyAgentTest, StandsInForEachApplicationAsThatSays) {
  const RegisteredApplication other{"org.example.other", folder_.path() / "other.sqlite"};
  registry_.note(other);
  const auto fireOther = [&] {
    NotificationStore(other.store, log_).put(requestFor("other"));
    startAgent();
    waitUntil([&] { return agentLocation_->isUpdating(); });
    for (const double metres : {500, 0}) agentLocation_->deliver({northOfSite(metres), 5});
  };
  const auto expectShown = [&](std::size_t count) {
    waitForShown(count);
    EXPECT_EQ(desktop_.shown().back().application, other.applicationID);
    waitUntil([&] { return NotificationStore(other.store, log_).pending().empty(); });
  };
  startApplication(registry_);
  desktop_.hold();
  fireOther();
  waitUntil([&] { return desktop_.requestCount() == 1; });
  // What is being shown for a registration that changes can be clicked as before.
  registry_.note({other.applicationID, other.store, PositionSource::gpsd});
  center_ = makeCenter(registry_, PositionSource::portal);
  waitUntil([&] { return sources_.size() == 4; });
  EXPECT_THAT(sources_, testing::Contains(PositionSource::portal));
  desktop_.release();
  expectShown(1);
  center_ = makeCenter(registry_, PositionSource::portal, false);
  desktop_.click(desktop_.shown().back());
  waitUntil([&] { return ends_ == 1; });
  EXPECT_THAT(NotificationStore(other.store, log_).takeClicks(), testing::SizeIs(1));
  EXPECT_THAT(pendingOf(*center_), ElementsAre("one"));
  fireOther();
  expectShown(2);
  EXPECT_EQ(ends_, 1);
  desktop_.vanish();
  waitUntil([&] { return ends_ == 2; });
}

TEST_F(NotifyAgentTest, IsNotToldOfAnApplicationThatUsesItNoMoreAndHasNothingPending) {
  const RegisteredApplication application{"org.example.app", file_};
  registry_.note(application);
  center_ = makeCenter(registry_, PositionSource::automatic, false);
  EXPECT_THAT(pendingOf(*center_), IsEmpty());
  EXPECT_FALSE(registry_.knows(application));
}

TEST_F(NotifyAgentTest, LeavesARunningApplicationAloneAndEndsWhenItIsDisarmed) {
  startApplication(registry_);
  startAgent();
  waitForAgent(true);
  arm({requestFor("two")});
  EXPECT_FALSE(agentLocation_->isUpdating());
  EXPECT_EQ(ends_, 0);
  center_->removePendingNotificationRequests({"one", "two"});
  // The agent and the application hear of it each in their own time.
  waitUntil([&] { return ends_ > 0 && !location_->isUpdating(); });
}

TEST_F(NotifyAgentTest, EndsWithNothingToDoWithASecondAgentAndWithoutABus) {
  // A store that cannot be opened.
  registry_.note({"org.example.other", folder_.path() / "other.sqlite"});
  test::writeFile(folder_.path() / "other.sqlite", "");
  std::filesystem::create_directory(folder_.path() / "other.sqlite-wal");
  startAgent();
  waitUntil([&] { return ends_ == 1; });

  startApplication(registry_);
  startAgent();
  waitForAgent(true);
  EXPECT_EQ(ends_, 1);
  const auto second = makeAgent([this] { ends_ = 20; });
  waitUntil([&] { return ends_ == 20; });
  daemon_.stop();
  waitUntil([&] { return ends_ == 21; });

  // All three look for the bus; the application is found there by an agent of the new one.
  waitUntil([&] { return time_.pendingTaskCount() == 3; });
  daemon_.start();
  startAgent();
  waitForAgent(true);
  time_.advance(std::chrono::seconds(1));
  waitForName(RegisteredApplication{"org.example.app", file_}.busName(), true);
}

TEST_F(NotifyAgentTest, TheBusStartsTheProgramWhichTakesOverOnceTheApplicationIsGone) {
  test::GeoClueDouble geoclue(daemon_);
  daemon_.addService(OVINTA_AGENT_SERVICE);
  using Variables = std::map<std::string, std::string>;
  dbus::Service session(bus_, "org.freedesktop.DBus");
  bool isSet = false;
  session.call("/org/freedesktop/DBus", "org.freedesktop.DBus", "UpdateActivationEnvironment",
               dbus::arguments(Variables{{"XDG_DATA_HOME", folder_.path().string()},
                                         {"DBUS_SYSTEM_BUS_ADDRESS", daemon_.address()}}),
               [&](const dbus::Reply& reply) { isSet = !reply.failure; });
  waitUntil([&] { return isSet; });
  const AgentRegistry registry(folder_.path() / "ovinta-notify-agent/OvintaSDK/Applications");
  startApplication(registry);
  waitForAgent(true);
  EXPECT_EQ(geoclue.clientCount(), 0U);
  center_ = nullptr;
  waitUntil([&] { return geoclue.service().count("Start") == 1; });
  EXPECT_EQ(geoclue.lastClients<std::string>("DesktopId"), "org.example.app");
  for (const double metres : {500, 0}) geoclue.feed(northOfSite(metres));
  waitForShown(1);
  desktop_.click(desktop_.shown().at(0));
  waitForAgent(false);
  center_ = makeCenter(registry);
  waitForClick();
}

}  // namespace
}  // namespace ovinta::platform::linuxos
