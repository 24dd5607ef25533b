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
      {{"--device", "tape"}, 2, ""}};
  for (const auto& [arguments, exitCode, output] : cases) {
    const CommandResult result = demo(arguments);
    EXPECT_EQ(result.exitCode, exitCode) << arguments.back();
    EXPECT_THAT(result.output, HasSubstr(output));
  }
}

}  // namespace
}  // namespace ovinta
