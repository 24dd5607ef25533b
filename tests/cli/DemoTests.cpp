#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "platform/JSON.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Command.h"

namespace ovinta {
namespace {

using test::CommandResult;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;

CommandResult demo(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {OVINTA_COMMAND, "demo", "--pace", "0"});
  return test::runCommand(arguments);
}

std::string trip(const std::string& name) { return std::string(OVINTA_TRIPS) + "/" + name; }

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

  const std::vector<std::string> requests = textsOfKind(result, "request");
  for (const char* request :
       {"POST m/v1/customer -> 200", "POST m/v1/orders -> 200", "GET m/v1/orders -> 200",
        "POST m/v1/events permission_update (authorized_when_in_use) -> 200",
        "POST m/v1/events state_change (en_route) -> 200",
        "POST m/v1/events state_change (nearby) -> 200",
        "POST m/v1/events state_change (arrived) -> 200",
        "POST m/v1/events state_change (waiting) -> 200",
        "POST m/v1/events state_change (completed) -> 200",
        "POST m/v1/events customer_rating (5) -> 200",
        "POST m/v1/events location_update (2 beacon(s)) -> 200"}) {
    EXPECT_THAT(requests, Contains(request));
  }
  EXPECT_THAT(requests, Contains(AllOf(HasSubstr("PUT m/v1/orders/"), HasSubstr("-> 200"))));
  // The nearer the site, the closer the library follows.
  const std::vector<std::string> accuracies = {"best, 3 m", "best, 400 m", "best, 200 m",
                                               "best, 100 m"};
  const std::vector<std::string> seen = textsOfKind(result, "accuracy");
  ASSERT_GT(seen.size(), accuracies.size());
  EXPECT_TRUE(std::equal(accuracies.begin(), accuracies.end(), seen.begin()));
  EXPECT_THAT(seen, Contains("best for navigation, 3 m"));
  EXPECT_THAT(textsOfKind(result, "summary"),
              ElementsAre(AllOf(HasSubstr(R"("customerState":5)"), HasSubstr(R"("state":1)"),
                                HasSubstr(R"("succeeded":true)"))));
}

TEST(Demo, printsTheSameEventsForTheSameSeedOnly) {
  const CommandResult first = demo({"--json", "--seed", "7"});
  EXPECT_EQ(first.exitCode, 0);
  EXPECT_EQ(demo({"--json", "--seed", "7"}).output, first.output);
  EXPECT_NE(demo({"--json", "--seed", "8"}).output, first.output);
}

TEST(Demo, takesAnyTripThatEndsAtTheSite) {
  const CommandResult result = demo({"--trip", trip("slow-approach.gpx")});
  EXPECT_EQ(result.exitCode, 0) << result.output;
  EXPECT_THAT(result.output, HasSubstr("Every expected step was seen."));
}

TEST(Demo, saysWhichStepFailedAndWhy) {
  const CommandResult passedBy = demo({"--trip", trip("drive-by.gpx")});
  EXPECT_EQ(passedBy.exitCode, 1);
  EXPECT_THAT(passedBy.output, HasSubstr("Reach the site: arrived: the trip ended "));

  const CommandResult refused = demo({"--base-url", "http://127.0.0.1:1"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.output, HasSubstr("Create the customer: Error Creating Profile: "));

  const CommandResult badTrip = demo({"--trip", OVINTA_COMMAND});
  EXPECT_EQ(badTrip.exitCode, 1);
  EXPECT_EQ(demo({"--pace", "-1"}).exitCode, 2);
}

TEST(Demo, usesAServiceThatAlreadyRuns) {
  sandbox::Sandbox service;
  ASSERT_EQ(service.start(), std::nullopt);
  const CommandResult result = demo({"--base-url", service.baseURL()});
  EXPECT_EQ(result.exitCode, 0) << result.output;
}

}  // namespace
}  // namespace ovinta
