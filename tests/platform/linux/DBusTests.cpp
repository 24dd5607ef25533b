#include <atomic>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/linux/dbus/BusDaemon.h"
#include "platform/linux/dbus/Service.h"
#include "tests/support/BusFixture.h"
#include "tests/support/DeathTest.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::linuxos::dbus {
namespace {

using namespace std::chrono_literals;
using test::ServiceDouble;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kName = "org.example.Clock";
constexpr const char* kPath = "/clock";

const std::map<std::string, std::string> kMethods{{"Echo", "s"}, {"Refuse", ""}, {"Hang", ""}};

ServiceDouble::Answer answer(const ServiceDouble::Call& call) {
  if (call.method == "Refuse") return Failure{"org.example.Refused", "not today"};
  if (call.method == "Hang") return ServiceDouble::NoAnswer{};
  return call.arguments;
}

template <class T>
void expectForm(const char* signature, const T& value) {
  const Variant written = write(value);
  EXPECT_STREQ(g_variant_get_type_string(written.get()), signature);
  EXPECT_FALSE(g_variant_is_floating(written.get())) << signature;
  EXPECT_EQ(read<T>(written), value) << signature;
  EXPECT_FALSE(read<std::tuple<T>>(written)) << signature;
}

TEST(DBusValueTest, ComesBackAsItWasWritten) {
  expectForm("b", true);
  expectForm("y", std::uint8_t{255});
  expectForm("n", std::int16_t{-2});
  expectForm("q", std::uint16_t{65'535});
  expectForm("i", -3);
  expectForm("u", 4'000'000'000U);
  expectForm("t", std::uint64_t{1} << 63);
  expectForm("d", -0.1);
  expectForm("s", std::string("\xc3\xa9\n"));
  expectForm("o", ObjectPath("/a/b_1"));
  expectForm("ay", std::vector<std::uint8_t>{0, 255});
  expectForm("ao", std::vector<ObjectPath>());
  expectForm("a{qay}", std::map<std::uint16_t, std::vector<std::uint8_t>>{{1, {2}}, {3, {}}});
  expectForm("(tt)", std::tuple(std::uint64_t{1}, std::uint64_t{2}));

  using Objects = std::map<ObjectPath, std::map<std::string, Properties>>;
  const auto written =
      write(Objects{{"/a", {{"x.Y", {{"One", write(1U)}, {"Two", write("2")}}}, {"x.Z", {}}}}});
  EXPECT_STREQ(g_variant_get_type_string(written.get()), "a{oa{sa{sv}}}");
  const auto objects = read<Objects>(written).value();
  EXPECT_EQ(read<std::uint32_t>(objects.at("/a").at("x.Y"), "One"), 1U);
  EXPECT_EQ(read<std::string>(objects.at("/a").at("x.Y"), "Two"), "2");
  EXPECT_THAT(objects.at("/a").at("x.Z"), IsEmpty());
  const auto twice = Variant::taking(g_variant_new_parsed("{'a': <%u>, 'a': <%u>}", 1U, 2U));
  EXPECT_EQ(read<std::uint32_t>(read<Properties>(twice).value(), "a"), 1U) << "the first counts";
}

TEST(DBusValueTest, IsNoneWhereItIsMissingOrOfAnotherType) {
  const auto pair = arguments(1U, "two");
  EXPECT_EQ(read<std::string>(pair, 1), "two");
  EXPECT_FALSE(read<std::string>(pair, 0));
  EXPECT_FALSE(read<std::string>(pair, 2));
  EXPECT_FALSE(read<std::uint32_t>(write(1U), 0)) << "has no parts";
  EXPECT_FALSE(read<std::uint32_t>(arguments(), 0));
  EXPECT_FALSE(read<std::uint32_t>(Variant()));
  EXPECT_FALSE(read<std::uint32_t>(Variant(), 0));
  const Properties properties{{"One", write(1U)}, {"None", Variant()}};
  for (const char* name : {"One", "None", "Two"}) EXPECT_FALSE(read<bool>(properties, name));
}

class DBusTest : public test::BusTest {
 protected:
  DBusTest() { clock_.addObject(kPath, kName); }

  std::string call(const char* method, Variant arguments,
                   std::chrono::milliseconds timeout = kCallTimeout) {
    std::string result;
    service_->call(
        kPath, kName, method, std::move(arguments),
        [&](const Reply& reply) {
          result = reply.failure ? reply.failure->name + ": " + reply.failure->message
                                 : read<std::string>(reply.values, 0).value_or("nothing");
        },
        timeout);
    EXPECT_EQ(result, "") << "never inside the call";
    waitUntil([&] { return !result.empty(); });
    return result;
  }

  ServiceDouble clock_{daemon_, kName, kMethods, &answer};
  std::unique_ptr<Service> service_ = std::make_unique<Service>(bus_, kName);
};

TEST_F(DBusTest, CallsEndInAnAnswerOrAFailure) {
  EXPECT_EQ(call("Echo", arguments("hello")), "hello");
  EXPECT_EQ(call("Refuse", {}), "org.example.Refused: not today");
  EXPECT_THAT(call("Hang", {}, 20ms), testing::StartsWith(kNoReply));
  EXPECT_THAT(call("Echo", arguments(1U)), testing::HasSubstr("InvalidArgs"));
  clock_.vanish();
  EXPECT_THAT(call("Echo", arguments("hello")), testing::StartsWith(kServiceUnknown));
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(DBusTest, WhoeverDestroysTheServiceInAHandlerHearsNothingMore) {
  int ticks = 0;
  service_->onSignal(kPath, kName, "", [&](const Signal&) {
    ++ticks;
    service_.reset();
  });
  service_->call(kPath, kName, "Hang", {}, [](const Reply&) { ADD_FAILURE(); });
  passBy(kName);
  for (int i = 0; i < 3; ++i) clock_.emit(kPath, kName, "Tick", arguments(3U));
  passBy(kName);
  EXPECT_EQ(ticks, 1);
}

TEST_F(DBusTest, HandlersHearOfTheirOwnObjectOnly) {
  std::vector<std::uint32_t> alarms;
  service_->onPropertiesChanged(kPath, kName, [&](const std::string&, const Properties& changed) {
    alarms.push_back(read<std::uint32_t>(changed, "Alarm").value_or(0));
  });
  passBy(kName);
  for (const auto& [path, alarm] : {std::pair("/other", 9U), {kPath, 7U}}) {
    clock_.change(path, kName, {{"Alarm", write(alarm)}});
  }
  passBy(kName);
  EXPECT_THAT(alarms, ElementsAre(7U));
}

TEST_F(DBusTest, ABusThatIsGoneIsLookedForEverMoreRarelyWhileSomebodyListens) {
  std::vector<bool> presence;
  int ticks = 0;
  service_->onPresence(false, [&](bool isPresent) { presence.push_back(isPresent); });
  service_->onSignal(kPath, kName, "Tick", [&](const Signal&) { ++ticks; });
  waitUntil([&] { return presence.size() == 1; });
  const auto isRetryDue = [&] { return time_.pendingTaskCount() == 1; };
  daemon_.stop();
  for (const auto delay : {1s, 2s, 4s, 8s, 16s, 32s, 60s, 60s}) {
    waitUntil(isRetryDue);
    time_.advance(delay - 1ms);
    EXPECT_TRUE(isRetryDue()) << delay.count();
    time_.advance(1ms);
  }
  waitUntil(isRetryDue);
  EXPECT_THAT(log_->lines(), ElementsAre("org.example.Clock is not on the bus",
                                         testing::StartsWith("No D-Bus at unix:path=")));
  daemon_.start();
  ServiceDouble again(daemon_, kName, kMethods, &answer);
  time_.advance(60s);
  waitUntil([&] { return presence.size() == 3; });
  EXPECT_THAT(presence, ElementsAre(true, false, true));
  again.emit(kPath, kName, "Tick", arguments(1U));
  waitUntil([&] { return ticks == 1; });

  daemon_.stop();
  waitUntil(isRetryDue);
  service_ = std::make_unique<Service>(bus_, kName);
  int arrivals = 0;
  service_->onArrival([&] { ++arrivals; });
  time_.advance(1s);
  EXPECT_THAT(call("Echo", arguments("hello")), testing::StartsWith(kDisconnected));
  expectNoTimer();
  daemon_.start();
  ServiceDouble third(daemon_, kName, kMethods, &answer);
  third.addObject(kPath, kName);
  EXPECT_EQ(call("Echo", arguments("hello")), "hello");
  waitUntil([&] { return arrivals > 0; });
}

TEST_F(DBusTest, ABusThatDoesNotAnswerIsAskedAgainAFewTimes) {
  std::atomic<std::size_t> silences = 0;
  ServiceDouble slow(daemon_, "org.example.Bus", {{"ListNames", ""}, {"RequestName", "su"}},
                     [&](const auto& call) -> ServiceDouble::Answer {
                       if (slow.count(call.method) <= silences) return Failure{kNoReply, "late"};
                       return arguments(std::vector<std::string>{"org.example.App"});
                     });
  slow.addObject(kBusPath, kBusName);
  BusDaemon names(bus_, "org.example.Bus");
  silences = BusDaemon::kMostQuestions - 1;
  std::optional<std::set<std::string>> found;
  names.listNames([&](const auto& all) { found = all; });
  waitUntil([&] { return found.has_value(); });
  EXPECT_THAT(found.value(), ElementsAre("org.example.App"));
  ++silences;
  std::optional<bool> isOurs;
  names.requestName("org.example.App", BusDaemon::IfTaken::wait, [&](bool is) { isOurs = is; });
  waitUntil([&] { return isOurs.has_value(); });
  EXPECT_FALSE(isOurs.value());
  EXPECT_EQ(slow.count("RequestName"), silences);
}

TEST_F(DBusTest, TheBusMayEndWithCallsUnderWay) {
  std::weak_ptr<int> held;
  {
    const auto kept = std::make_shared<int>();
    held = kept;
    service_->call(kPath, kName, "Hang", {}, [kept](const Reply&) { ADD_FAILURE(); });
  }
  service_->onPresence(false, [](bool) {});
  waitUntil([&] { return clock_.count("Hang") == 1; });
  service_.reset();
  bus_.reset();
  time_.runUntilIdle();
  EXPECT_TRUE(held.expired());
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST_F(DBusTest, TheProcessMayExitWithCallsUnderWay) {
  const test::DeathTest inAProcessOfItsOwn;
  const auto exitDuringCall = [this] {
    service_->call(kPath, kName, "Hang", {}, [](const Reply&) { ADD_FAILURE(); });
    waitUntil([&] { return clock_.count("Hang") == 1; });
    std::exit(0);
  };
  EXPECT_EXIT(exitDuringCall(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ovinta::platform::linuxos::dbus
