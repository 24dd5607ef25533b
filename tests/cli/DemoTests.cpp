#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/JSON.h"
#include "replay/Rig.h"
#include "sandbox/Sandbox.h"
#include "tests/cli/Transcript.h"
#include "tests/support/Command.h"

namespace ovinta {
namespace {

using test::CommandResult;
using testing::Contains;
using testing::HasSubstr;

CommandResult demo(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {OVINTA_COMMAND, "demo", "--pace", "0"});
  return test::runCommand(arguments);
}

/// The lines of that kind, each the text of its event.
std::vector<std::string> textsOfKind(const CommandResult& result, std::string_view kind) {
  std::vector<std::string> texts;
  for (const std::string& line : result.lines()) {
    const auto value = platform::parseJSON(line);
    const auto* event = value ? value->as<platform::Dictionary>() : nullptr;
    if (event == nullptr || *platform::find<std::string>(*event, "kind") != kind) continue;
    const auto* text = platform::find<std::string>(*event, "text");
    texts.push_back(text ? *text : line);
  }
  return texts;
}

TEST(Demo, goesFromTheAccountToTheRating) {
  const CommandResult result = demo({"--json"});
  EXPECT_EQ(result.exitCode, 0) << result.output;
  EXPECT_EQ(textsOfKind(result, "step").size(), 15U);

  EXPECT_THAT(textsOfKind(result, "request"),
              testing::IsSupersetOf<testing::Matcher<std::string>>(
                  {"POST m/v1/customer -> 200", "POST m/v1/orders -> 200", "GET m/v1/orders -> 200",
                   testing::MatchesRegex("PUT m/v1/orders/.*-> 200"),
                   "POST m/v1/events permission_update (authorized_when_in_use) -> 200",
                   "POST m/v1/events state_change (en_route) -> 200",
                   "POST m/v1/events state_change (nearby) -> 200",
                   "POST m/v1/events state_change (arrived) -> 200",
                   "POST m/v1/events state_change (waiting) -> 200",
                   "POST m/v1/events state_change (completed) -> 200",
                   "POST m/v1/events customer_rating (5) -> 200",
                   "POST m/v1/events location_update (2 beacon(s)) -> 200"}));
  // The nearer the site, the closer the library follows.
  const std::vector<std::string> seen = textsOfKind(result, "accuracy");
  ASSERT_GT(seen.size(), 4U);
  EXPECT_THAT(std::vector(seen.begin(), seen.begin() + 4),
              testing::ElementsAre("best, 3 m", "best, 400 m", "best, 200 m", "best, 100 m"));
  EXPECT_THAT(seen, Contains("best for navigation, 3 m"));
  EXPECT_THAT(textsOfKind(result, "summary"),
              ElementsAre(testing::AllOf(HasSubstr(R"("customer_state":"completed")"),
                                         HasSubstr(R"("state":"ready")"),
                                         HasSubstr(R"("succeeded":true)"))));
}

TEST(Demo, printsTheSameEventsForTheSameSeedOnly) {
  const CommandResult forPeople = demo({"--seed", "7"});
  EXPECT_EQ(forPeople.exitCode, 0);
  EXPECT_EQ(forPeople.output, test::transcript("demo.txt"));
  EXPECT_EQ(demo({"--json", "--seed", "7"}).output, test::transcript("demo.json"));
  EXPECT_NE(demo({"--json", "--seed", "8"}).output, test::transcript("demo.json"));
}

TEST(Demo, showsWhatTheServiceLearnsOfATripThroughATunnel) {
  const CommandResult result =
      test::runCommand({OVINTA_COMMAND, "demo", "--tunnel", "--json", "--seed", "7"});
  EXPECT_EQ(result.exitCode, 0) << result.output;
  const auto document = platform::parseJSON(result.output);
  ASSERT_TRUE(document) << result.output;
  const auto& summary = *document->as<platform::Dictionary>();
  std::string learned;
  for (const auto& row : *platform::find<platform::List>(summary, "steps")) {
    const auto& step = *row.as<platform::Dictionary>();
    const std::string made = *platform::find<std::string>(step, "made");
    const auto mark = [&](std::string_view key) {
      const auto* time = platform::find<std::string>(step, key);
      return !time ? "never" : *time <= made ? "at once" : "late";
    };
    learned += *platform::find<std::string>(step, "step") + " " + mark("without") + "/" +
               mark("with") + "\n";
  }
  EXPECT_EQ(learned,
            "en_route at once/at once\nnearby never/late\narrived never/late\n"
            "waiting never/late\ncompleted at once/at once\nrating at once/at once\n");
  const auto& with = *platform::find<platform::Dictionary>(summary, "with");
  EXPECT_EQ(*platform::find<std::int64_t>(with, "repetitions"), 1);
  EXPECT_THAT(*platform::find<std::string>(with, "account"), HasSubstr(" + waiting 0 + "));

  const CommandResult forPeople = test::runCommand(
      {OVINTA_COMMAND, "demo", "--tunnel", "--trip", OVINTA_TRIPS "/slow-approach.gpx"});
  EXPECT_EQ(forPeople.exitCode, 0) << forPeople.output;
  EXPECT_THAT(forPeople.output, HasSubstr("never"));
}

TEST(Demo, goesTheSameWayWithTheRealPosition) {
  const auto rig = replay::Rig::start();
  if (!rig) GTEST_SKIP() << rig.error();
  const CommandResult result =
      test::runCommand({OVINTA_COMMAND, "demo", "--device", "linux", "--pace", "2", "--json"});
  EXPECT_EQ(result.exitCode, 0) << result.output;
  EXPECT_THAT(textsOfKind(result, "request"), Contains("POST m/v1/events location_update -> 200"));
  EXPECT_THAT(textsOfKind(result, "summary"), ElementsAre(HasSubstr(R"("succeeded":true)")));
}

TEST(Demo, saysHowItEnded) {
  sandbox::Sandbox service;
  ASSERT_EQ(service.start(), std::nullopt);
  const std::string seen = "Every expected step was seen.";
  const struct {
    std::vector<std::string> arguments;
    int exitCode;
    std::string output;
  } cases[] = {
      {{"--trip", OVINTA_TRIPS "/slow-approach.gpx"}, 0, seen},
      {{"--base-url", service.baseURL()}, 0, seen},
      {{"--trip", OVINTA_TRIPS "/drive-by.gpx"}, 1, "Reach the site: arrived: the trip ended "},
      {{"--base-url", "http://127.0.0.1:1"}, 1, "Create the customer: Error Creating Profile: "},
      {{"--trip", OVINTA_COMMAND}, 1, ""},
      {{"--pace", "-1"}, 2, ""},
      {{"--tunnel"}, 2, ""},
      {{"--device", "tape"}, 2, ""}};
  for (const auto& [arguments, exitCode, output] : cases) {
    const CommandResult result = demo(arguments);
    EXPECT_EQ(result.exitCode, exitCode) << arguments.back();
    EXPECT_THAT(result.output, HasSubstr(output));
  }
}

}  // namespace
}  // namespace ovinta
