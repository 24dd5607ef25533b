// What an application's test cases stand on: that each begins afresh, and what a failing one says.
#include "platform/simulation/testing/AppTest.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/support/FunctionOperation.h"

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AppTestTest : public ::testing::Test {
 protected:
  AppTestOptions told() {
    return {.onProblem = [this](const Problem& problem) { problems.push_back(problem); }};
  }

  /// Has the service be asked, past the library.
  static void send(
      std::string method, const std::string& path, std::optional<std::string> body,
      URLSession::Completion completion = [](auto, auto, auto) {}) {
    services().urlSession->startDataTask({.url = {"https://service.test" + path},
                                          .method = std::move(method),
                                          .body = std::move(body)},
                                         std::move(completion));
  }

  std::vector<Problem> problems;
};

TEST_F(AppTestTest, SaysWhatWasSentInsteadOfWhatIsExpected) {
  AppTest test(told());
  const int line = __LINE__ + 1;
  test.service().expect("POST /orders").with("site_id", 42).with("name", "Al").answerData("yes");
  test.service().expect("GET /orders");
  test.service().allow("POST /events").with("kind", "move");

  send("POST", "/events", R"({"data":{"kind":"move"}})");
  send("POST", "/events", R"({"data":{"kind":"stop"}})");
  ASSERT_THAT(problems, SizeIs(1));
  EXPECT_EQ(problems[0].text,
            "The app has sent another request than the test case expects.\n"
            "  expected  POST /orders with \"site_id\": 42, \"name\": \"Al\"   (AppTestTests.cpp:" +
                std::to_string(line) +
                ")\n"
                "  sent      POST /events {\"data\":{\"kind\":\"stop\"}}\n"
                "Sent so far:\n"
                "  1. POST /events {\"data\":{\"kind\":\"move\"}}");
  EXPECT_EQ(problems[0].place.line, line);

  // One that differs in its fields alone is answered, and what follows is in order again.
  std::optional<std::string> answer;
  send("POST", "/orders", R"({"data":{"site_id":42.0,"name":7}})",
       [&answer](auto data, auto, auto) { answer = std::move(data); });
  test.settle();
  EXPECT_EQ(answer, R"({"data":"yes"})");
  ASSERT_THAT(problems, SizeIs(2));
  EXPECT_THAT(problems[1].text,
              HasSubstr("  differs   \"name\": 7 instead of \"Al\"\nSent so far"));
  send("GET", "/orders", {});
  EXPECT_THAT(problems, SizeIs(2));
  EXPECT_EQ(test.service().count("POST *"), 3u);

  test.service().expect("GET /orders");
  EXPECT_FALSE(test.finish());
  ASSERT_THAT(problems, SizeIs(3));
  EXPECT_THAT(problems[2].text,
              HasSubstr("has not sent what the test case expects:\n  GET /orders"));
  EXPECT_THAT(problems[2].text, HasSubstr("  4. GET /orders"));
}

TEST_F(AppTestTest, LooksAtBodyAndHead) {
  AppTest test(told());
  test.service().expect("PUT /a").withBody(R"({"x":1,"y":[2]})");
  test.service().expect("PUT /a").withBody("");
  send("PUT", "/a", R"({"y":[2],"x":1})");
  send("PUT", "/a", {});
  EXPECT_THAT(problems, IsEmpty());
  test.service().expect("PUT /a").withBody("{}").withHeader("accept", "*/*");
  send("PUT", "/a", "[]");
  ASSERT_THAT(problems, SizeIs(1));
  EXPECT_THAT(problems[0].text, HasSubstr("  differs   another body instead of the body {}\n"
                                          "  differs   accept: nothing instead of */*"));
}

TEST_F(AppTestTest, AnAppThatTriesForEverComesToRest) {
  AppTest test(told());
  int failures = 0;
  const std::function<void()> tryAgain = [&] {
    send("GET", "/", {}, [&](auto, auto, const auto& error) {
      failures += error ? 1 : 0;
      tryAgain();
    });
  };
  tryAgain();
  test.settle();
  EXPECT_EQ(failures + 1, static_cast<int>(problems.size()));
  EXPECT_THAT(problems.back().text, HasSubstr("no answer from here on"));
}

TEST_F(AppTestTest, EndsWhatIsUnderWayWithTheCase) {
  const auto held = std::make_shared<int>();
  std::shared_ptr<OperationQueue> queue;
  const auto use = [held] { EXPECT_FALSE(held) << "this belongs to the case before"; };
  const auto leave = [&] {
    queue->addOperation(test::operation(use));
    services().mainQueue->async(use);
    send("GET", "/", {}, [use](auto, auto, auto) { use(); });
  };
  {
    AppTest test(told());
    Ovinta::configure({{"token", "first"}});
    test.signIn();
    test.service().expect("GET /").after(1s);
    queue = services().operationQueues->makeQueue();
    Ovinta::orders().fetch([use](const auto&, const auto&) { use(); });
    leave();
  }
  EXPECT_EQ(held.use_count(), 2) << "only `use` is left";
  // Whoever still holds something of the case before does no harm with it.
  leave();
  AppTest test(told());
  test.service().allow("GET *").answerData(List{});
  EXPECT_EQ(Ovinta::customer().current(), nullptr);
  EXPECT_EQ(UserDefaultsKey::apiBase.stringValue(), std::nullopt);
  test.advance(1h);
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(AppTestTest, ARestartKeepsWhatOutlastsAProcess) {
  AppTest test(told());
  test.signIn(sampleCustomer({{"name", "Ann"}}));
  test.location().setAuthorizationStatus(kAuthorizationDenied);
  test.device().setBatteryState(BatteryState::charging);
  test.notifications().add({"a", {}, {}}, {});
  test.advance(1h);
  Ovinta::setPushToken("push");
  services().mainQueue->async([] { FAIL() << "this belongs to the process before"; });

  test.relaunch();
  Ovinta::configure({});
  EXPECT_EQ(Ovinta::customer().current()->info.name, "Ann");
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);
  EXPECT_EQ(services().location->authorizationStatus(), kAuthorizationDenied);
  EXPECT_EQ(services().device->batteryState(), BatteryState::charging);
  EXPECT_THAT(test.notifications().pending(), SizeIs(1));
  EXPECT_EQ(services().clock->now(), kDefaultTripStart + 1h);
  test.settle();
  EXPECT_TRUE(test.finish());
}

TEST_F(AppTestTest, TravelsAlongPointsAndFiles) {
  AppTest test(told());
  std::vector<Location> positions;
  test.location().onPosition([&](const Location& at) { positions.push_back(at); });
  test.travel(Trip::along({{0, 0}, {0, 0.01}, {0, 0.02}}, 10));
  // 0.02 degrees along the equator of the mean sphere are 2,224 m.
  EXPECT_EQ(test.time().now() - kDefaultTripStart, 222390160us);
  ASSERT_THAT(positions, SizeIs(224));
  EXPECT_EQ(positions.back().coordinate, (Coordinate{0, 0.02}));
  test.travel("nowhere.gpx");
  ASSERT_THAT(problems, SizeIs(1));
  EXPECT_THAT(problems[0].text, HasSubstr("nowhere.gpx: the file cannot be read"));
}

}  // namespace
}  // namespace ovinta::platform::simulation
