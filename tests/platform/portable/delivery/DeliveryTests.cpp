#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <future>

#include "platform/portable/delivery/DeliveryLines.h"
#include "platform/portable/delivery/Judgement.h"
#include "platform/portable/delivery/RetryGate.h"
#include "tests/platform/portable/delivery/DeliveryWorld.h"

namespace ovinta::platform::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Way = EventService::Way;

TEST(RetryAfterTest, IsANumberOfSecondsOrADate) {
  const Date now = std::chrono::sys_days(std::chrono::year(1994) / 11 / 6) + 8h + 49min;
  const std::pair<const char*, std::optional<TimeInterval>> cases[] = {
      {"0", 0s},
      {"120", 120s},
      {"99999999999999999999", 1h},
      {"Sun, 06 Nov 1994 08:49:37 GMT", 37s},
      {"Sun, 06 Nov 1994 08:00:00 GMT", 0s},
      {"Mon, 06 Nov 2034 08:00:00 GMT", 1h},
      {"", {}},
      {"-1", {}},
      {"soon", {}},
      {"Sun, 99 Nov 1994 08:49:37 GMT", {}},
      {"Sun, 06 Foo 1994 08:49:37 GMT", {}},
      {"Sun, 06 Nov 1994 08:-1:37 GMT", {}}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(portable::readRetryAfter(text, now), expected) << text;
  }
}

TEST(DeliveryTest, TellsOfATunnelAndSendsWhatItHeldUp) {
  DeliveryWorld world;
  world.setWay(Way::noNetwork);
  world.send(eventRequest(7, "state_change", 1));
  world.time.advance(1s);
  for (int i = 2; i < 6; ++i) world.send(eventRequest(7, "location_update", i));
  world.send(eventRequest(8, "state_change", 6));
  world.time.advance(10min);
  EXPECT_EQ(world.account().waiting, 3U);
  EXPECT_EQ(world.account().superseded, 3U);
  EXPECT_EQ(world.told, "waits ");
  world.setWay(Way::open);
  world.time.advance(6s);
  EXPECT_EQ(world.told,
            "waits late:7:state_change late:7:location_update late:8:state_change resumed ");
  EXPECT_EQ(summary(world.account()),
            "made 6 = delivered 3 + waiting 0 + superseded 3 + dropped 0");
  EXPECT_THAT(world.log->lines(),
              ElementsAre("Delivery waits for the network",
                          "Delivery after an outage: " + summary(world.account())));
  EXPECT_THAT(world.ended, testing::Each(1)) << "positions that were superseded have an answer too";
}

TEST(DeliveryTest, HonoursRetryAfterThoughOthersAreAnswered) {
  DeliveryWorld world;
  world.setWay(Way::tooMany);
  world.send(eventRequest(7, "state_change", 1));
  world.time.advance(1s);
  world.setWay(Way::open);
  world.send(eventRequest(8, "state_change", 2));
  world.time.advance(28s);
  EXPECT_EQ(world.account().delivered, 1U);
  world.time.advance(12s);
  EXPECT_EQ(world.account().delivered, 2U);
}

TEST(DeliveryTest, GivesUpWhatIsTooOldTooManyOrOfACustomerWhoIsGone) {
  DeliveryWorld world(1, {.eventAgeLimit = 1h, .requestAgeLimit = 1min, .eventLimit = 3});
  world.setWay(Way::noNetwork);
  world.send({.url = {"https://service.test/m/v1/sites"}});
  for (int i = 1; i <= 4; ++i) world.send(eventRequest(i, "state_change", i));
  world.time.advance(61s);
  EXPECT_THAT(world.ended, ElementsAre(1, 0, 0, 0, 1));
  EXPECT_EQ(world.endings[0].error->localizedDescription, "Could not connect to the server.");
  EXPECT_THAT(world.endings[4].error->localizedDescription, HasSubstr("Too many"));
  world.time.advance(1h);
  world.send(eventRequest(5, "state_change", 5));
  world.time.advance(1s);
  world.signOut();
  EXPECT_TRUE(world.outbox->kept().empty());
  world.time.advance(1s);
  EXPECT_THAT(world.ended, testing::Each(1));
  EXPECT_EQ(summary(world.account()),
            "made 5 = delivered 0 + waiting 0 + superseded 0 + dropped 5 (too old 3, too many 1, "
            "signed out 1)");
}

TEST(DeliveryTest, NewerPositionsHaveNoEarlierTry) {
  for (const auto& [way, most] : {std::pair{Way::noNetwork, 75}, {Way::tooMany, 125}}) {
    DeliveryWorld world;
    world.service.way = way;
    for (int i = 1; i <= 1800; ++i) {
      world.send(eventRequest(7, "location_update", i));
      world.time.advance(2s);
    }
    EXPECT_LE(world.service.tries, most) << "in an hour";
    EXPECT_GE(world.service.tries, 8);
    EXPECT_EQ(world.told, "waits ");
    EXPECT_EQ(world.account().waiting, 1U);
    EXPECT_EQ(std::ranges::count(world.ended, 0), 100) << "no more wait for one answer";
    world.setWay(Way::open);
    world.time.advance(1h);
    EXPECT_THAT(world.ended, testing::Each(1));
    EXPECT_EQ(world.service.effects.back().sequence, 1800);
  }
}

TEST(DeliveryTest, HasRequestsHandedOverInTheOrderOfTheCalls) {
  struct Step final : Operation {
    explicit Step(std::function<void()> step) : step(std::move(step)) {}
    void main() override { step(); }
    const std::function<void()> step;
  };
  DeliveryWorld world;
  const auto queue = world.services.operationQueues->makeQueue();
  std::vector<int> begun;
  std::promise<void> last;
  for (int i = 0; i < 1000; ++i) {
    queue->addOperation(std::make_shared<Step>([&, i] {
      begun.push_back(i);
      if (i == 999) last.set_value();
    }));
  }
  last.get_future().wait();
  EXPECT_EQ(begun.size(), 1000U);
  EXPECT_TRUE(std::ranges::is_sorted(begun));
}

TEST(DeliveryTest, TakesNoSettingsThatCannotBeReadForALogout) {
  struct Unreadable final : SettingsStore {
    std::optional<std::string> string(std::string_view) const override { return std::nullopt; }
    void set(std::string_view, std::string_view) override {}
    void remove(std::string_view) override {}
    void apply(const Changes&) override {}
    void registerDefault(std::string_view, std::string_view) override {}
    std::optional<std::string> failure() const override { return "no file"; }
  };
  DeliveryWorld world;
  world.setWay(Way::noNetwork);
  world.send(eventRequest(7, "state_change", 1));
  world.quit();
  world.setWay(Way::open);
  const auto readable = std::exchange(world.settings, std::make_shared<Unreadable>());
  world.launch();
  world.time.advance(1h);
  EXPECT_EQ(world.account().waiting, 1U);
  world.quit();
  world.settings = readable;
  world.launch();
  world.time.advance(6s);
  EXPECT_EQ(world.account().delivered, 1U);
}

TEST(DeliveryTest, SendsWhatAnotherProcessHadFirstOnceItCanBeRead) {
  DeliveryWorld world;
  world.setWay(Way::noNetwork);
  world.send(eventRequest(7, "state_change", 1));
  world.quit();
  world.outbox->isUnreadable = true;
  world.launch();
  world.send(eventRequest(7, "state_change", 2));
  world.time.advance(1min);
  world.outbox->isUnreadable = false;
  world.send(eventRequest(7, "state_change", 3));
  EXPECT_EQ(world.outbox->kept().size(), 3U);
  world.setWay(Way::open);
  world.time.advance(10s);
  ASSERT_EQ(world.service.effects.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(world.service.effects[i].sequence, static_cast<std::int64_t>(i + 1));
  }
}

TEST(DeliveryTest, DoesNotUndoWhatANewerRequestHasDoneNorAskForACustomerWhoIsGone) {
  DeliveryWorld world;
  const auto request = [](const char* method, const char* path) {
    return URLRequest{.url = {std::string("https://service.test/m/v1/") + path},
                      .method = method,
                      .headers = {{"Authorization", "Token token=\"alice\""}},
                      .body = R"({"data":{"order_id":1,"eta_seconds":1}})"};
  };
  world.setWay(Way::noNetwork);
  world.send(request("PUT", "orders/CODE"));
  world.time.advance(1s);
  world.send(request("PUT", "orders/CODE"));
  world.send(request("PUT", "orders/OTHER"));
  world.send(request("GET", "orders"));
  world.time.advance(1s);
  EXPECT_THAT(world.ended, ElementsAre(1, 0, 0, 0));
  world.signOut();
  world.time.advance(1s);
  EXPECT_THAT(world.ended, testing::Each(1));
  const int tries = world.service.tries;
  world.setWay(Way::open);
  world.time.advance(1h);
  EXPECT_EQ(world.service.tries, tries);
}

TEST(DeliveryTest, KeepsNoTokenAndPutsItInAfterARestart) {
  DeliveryWorld world;
  world.setWay(Way::noNetwork);
  world.send(eventRequest(7, "state_change", 1));
  const auto kept = world.outbox->kept();
  ASSERT_EQ(kept.size(), 1U) << "before the call returns";
  for (const auto& [name, value] : kept.front().request.headers) {
    EXPECT_THAT(value, testing::Not(testing::AnyOf(HasSubstr("alice"), HasSubstr("app")))) << name;
  }
  world.quit();
  world.setWay(Way::open);
  world.launch();
  world.time.advance(6s);
  EXPECT_EQ(world.service.effects.size(), 1U);
  EXPECT_FALSE(world.service.hasEmptyField);
  EXPECT_EQ(world.told, "waits late:7:state_change resumed ");
}

TEST(DeliveryTest, SaysOnceThatTheDiskFailsAndCatchesUp) {
  DeliveryWorld world;
  world.setWay(Way::noNetwork);
  world.outbox->isBroken = true;
  for (int i = 1; i <= 3; ++i) world.send(eventRequest(i, "state_change", i));
  world.time.advance(1s);
  EXPECT_EQ(world.account().storageFailure, "the disk is full");
  EXPECT_EQ(std::ranges::count_if(
                world.log->lines(),
                [](const auto& line) { return line.find("disk is full") != line.npos; }),
            1);
  const int writes = world.outbox->writes;
  world.send(eventRequest(4, "state_change", 4));
  EXPECT_EQ(world.outbox->writes, writes) << "a disk that fails is left alone for a minute";
  world.outbox->isBroken = false;
  world.time.advance(1min);
  world.send(eventRequest(5, "state_change", 5));
  EXPECT_EQ(world.outbox->kept().size(), 5U);
  EXPECT_FALSE(world.account().storageFailure);
}

TEST(DeliveryTest, ADeviceInAnHourWithoutServiceHardlyWakes) {
  // The monitor sees a network, so that nothing but the tries tells.
  int wakes = 0;
  constexpr int kDevices = 200;
  for (int seed = 1; seed <= kDevices; ++seed) {
    DeliveryWorld world(static_cast<std::uint64_t>(seed));
    world.service.way = Way::noNetwork;
    for (int i = 1; i <= 50; ++i) world.send(eventRequest(i, "state_change", i));
    world.time.advance(1s);
    const int before = world.service.tries;
    world.time.advance(1h);
    wakes += world.service.tries - before;
  }
  EXPECT_LE(wakes, 12 * kDevices);
  RecordProperty("wakes_per_hour", std::to_string(static_cast<double>(wakes) / kDevices));
}

TEST(DeliveryTest, DevicesDoNotComeBackInStep) {
  struct Outage {
    const char* name;
    /// What the devices meet for so long, and within which time they are to come back.
    Way way;
    TimeInterval length;
    TimeInterval window;
  };
  constexpr int kDevices = 1000;
  constexpr int kParts = 50;
  const Outage outages[] = {{"a tunnel", Way::noNetwork, 20min, 5s},
                            {"a service that is down", Way::unavailable, 20min, 30min},
                            {"a service that asks to wait", Way::tooMany, 10s, 40s}};
  for (const auto& [name, way, length, window] : outages) {
    SCOPED_TRACE(name);
    std::map<std::int64_t, int> perPart;
    for (int seed = 1; seed <= kDevices; ++seed) {
      DeliveryWorld world(static_cast<std::uint64_t>(seed));
      world.setWay(way);
      world.send(eventRequest(7, "state_change", 1));
      world.time.advance(length);
      world.setWay(Way::open);
      const Date back = world.time.now();
      while (world.service.effects.empty() && world.time.now() < back + 2 * window)
        world.time.advance(window / kParts);
      ASSERT_FALSE(world.service.effects.empty());
      ++perPart[(world.time.now() - back) / (window / kParts)];
    }
    EXPECT_GE(perPart.size(), 10U);
    for (const auto& [part, devices] : perPart) EXPECT_LT(devices, kDevices / 7) << part;
  }
}

}  // namespace
}  // namespace ovinta::platform::test
