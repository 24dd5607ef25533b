#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

#include "cli/client/Activity.h"
#include "cli/device/ExchangeLog.h"

namespace ovinta::cli {
namespace {

using platform::UserNotificationRequest;

/// Answers each request with the status of the same number; 0: not at all, 1: with a head alone.
class CannedSession : public platform::URLSession {
 public:
  explicit CannedSession(std::deque<int> statuses) : statuses_(std::move(statuses)) {}

  void startDataTask(platform::URLRequest /*request*/, Completion completion) override {
    const int status = statuses_.front();
    statuses_.pop_front();
    if (status == 0) return completion({}, {}, platform::TransportError{"nobody is there"});
    const platform::HTTPResponse head{.statusCode = status == 1 ? 200 : status};
    if (status == 1) return completion({}, head, platform::TransportError{"it broke off"});
    completion("{}", head, {});
  }

 private:
  std::deque<int> statuses_;
};

TEST(ExchangeLog, countsRequestsByKindAndThoseWithoutSuccess) {
  const std::string events = "m/v1/events";
  const struct {
    std::string method, path, body;
    int status;
    std::string line;
  } cases[] = {
      {"GET", "m/v1/orders", "", 200, "GET m/v1/orders -> 200"},
      {"PUT", "m/v1/orders/AAAAAA", "{}", 204, "PUT m/v1/orders/AAAAAA -> 204"},
      {"PUT", "m/v1/orders/BBBBBB", "{}", 503, "PUT m/v1/orders/BBBBBB -> 503"},
      {"POST", events, R"({"data":{"event_type":"state_change","customer_state":"arrived"}})", 200,
       "POST m/v1/events state_change (arrived) -> 200"},
      {"POST", events, R"({"data":{"event_type":"state_change","customer_state":"arrived"}})", 0,
       "POST m/v1/events state_change (arrived) -> nobody is there"},
      {"POST", events, R"({"data":{"event_type":"customer_rating","customer_rating_value":5}})", 1,
       "POST m/v1/events customer_rating (5) -> it broke off"},
      {"POST", events, R"({"data":{"event_type":"location_update","beacons":[{},{}]}})", 301,
       "POST m/v1/events location_update (2 beacon(s)) -> 301"}};
  ExchangeLog log;
  EXPECT_EQ(log.last(), std::nullopt);
  std::deque<int> statuses;
  for (const auto& one : cases) statuses.push_back(one.status);
  ObservedURLSession session(std::make_shared<CannedSession>(statuses),
                             [&log](const Exchange& exchange) { log.add(exchange); });
  for (const auto& [method, path, body, status, line] : cases) {
    session.startDataTask({.url = {"http://h/" + path}, .method = method, .body = body},
                          [](const auto&, const auto&, const auto&) {});
    EXPECT_EQ(describe(log.last().value()), line);
    EXPECT_EQ(log.last()->status, status == 1 ? 0 : status);
  }
  EXPECT_THAT(log.counts(),
              testing::ElementsAre(testing::Pair("GET m/v1/orders", 1),
                                   testing::Pair("POST m/v1/events customer_rating", 1),
                                   testing::Pair("POST m/v1/events location_update", 1),
                                   testing::Pair("POST m/v1/events state_change", 2),
                                   testing::Pair("PUT m/v1/orders/<code>", 2)));
  EXPECT_EQ(log.failed(), 4u);
  EXPECT_EQ(log.succeeded("POST"), 1u);
  EXPECT_EQ(log.succeeded("POST", "state_change", "arrived"), 1u);
  EXPECT_EQ(log.succeeded("POST", "state_change", "waiting"), 0u);
}

/// Notes what it is asked for, and does it when it is told to.
class SlowCenter : public platform::UserNotificationCenter {
 public:
  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override {
    calls.emplace_back("list", [completion] { completion({}); });
  }
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override {
    calls.emplace_back("remove " + identifiers.front(), [] {});
  }
  void add(
      UserNotificationRequest request,
      std::function<void(std::optional<platform::UserNotificationError>)> completion) override {
    calls.emplace_back("add " + request.identifier, [completion] {
      if (completion) completion(std::nullopt);
    });
  }

  std::deque<std::pair<std::string, std::function<void()>>> calls;
};

TEST(Activity, goesOnUntilASlowCenterHasDoneWhatItWasAskedFor) {
  const auto center = std::make_shared<SlowCenter>();
  const auto activity = std::make_shared<Activity>();
  const auto counted = counting(center, activity);
  counted->removePendingNotificationRequests({"a"});
  UserNotificationRequest request;
  request.identifier = "b";
  counted->add(request, nullptr);
  // A removal has no answer of its own: it is done when a question after it is answered.
  EXPECT_THAT(center->calls, testing::ElementsAre(testing::Key("remove a"), testing::Key("list"),
                                                  testing::Key("add b")));
  for (const auto& [name, act] : center->calls) {
    EXPECT_FALSE(activity->isIdle()) << name;
    act();
  }
  EXPECT_TRUE(activity->isIdle());
  activity->waitUntilIdle();
}

}  // namespace
}  // namespace ovinta::cli
