#include "sandbox/domain/Feed.h"

#include <algorithm>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "sandbox/domain/Journal.h"
#include "sandbox/domain/Validation.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using testing::HasSubstr;

/// Takes what is there for the stream's reader.
std::string take(EventStream& stream) {
  std::string taken;
  while (const auto event = stream.nextEvent({})) {
    stream.taken();
    taken += *event;
  }
  return taken;
}

const std::string kReload = "event: reload\ndata: {}\n\n";

TEST(FeedTest, EachReaderGetsWhatComesAndIsToldWhatItMissed) {
  Feed feed;
  feed.tell("early");
  const auto reader = feed.listen();
  const auto slow = feed.listen();
  EXPECT_EQ(take(*reader), kReload);
  EXPECT_EQ(take(*slow), kReload);
  feed.tell("push", {{"id", 1}});
  EXPECT_EQ(reader->nextEvent({}), "event: push\ndata: {\"id\":1}\n\n");
  EXPECT_EQ(take(*reader), "event: push\ndata: {\"id\":1}\n\n") << "until it is taken";
  for (int count = 0; count < 1000; ++count) feed.tell("faults");
  EXPECT_THAT(take(*reader), Not(HasSubstr("reload")));
  EXPECT_EQ(take(*slow), kReload);
  feed.tell("faults");
  EXPECT_EQ(take(*slow), "event: faults\ndata: {}\n\n");
  EXPECT_FALSE(slow->isClosed());
  feed.close({});
  EXPECT_TRUE(slow->isClosed());
}

TEST(FeedTest, NumbersComeInTheirOrderWhoeverAdds) {
  Feed feed;
  Journal journal(1000, [&](const Dictionary& record) { feed.tell("push", record); });
  const auto reader = feed.listen();
  EXPECT_EQ(take(*reader), kReload);
  std::vector<std::jthread> writers;
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([&] {
      for (int count = 0; count < 100; ++count) journal.add({});
    });
  }
  writers.clear();
  std::string expected;
  for (int id = 1; id <= 400; ++id) {
    expected += "event: push\ndata: {\"id\":" + std::to_string(id) + "}\n\n";
  }
  EXPECT_EQ(take(*reader), expected);
}

TEST(FeedTest, KeepsNoMoreBytesForASlowReaderThanItMay) {
  Feed feed;
  const auto slow = feed.listen();
  EXPECT_EQ(take(*slow), kReload);
  const std::string text(1024 * 1024, 'x');
  for (int count = 0; count < 17; ++count) feed.tell("push", {{"text", text}});
  EXPECT_EQ(take(*slow), kReload);
}

using WatchTest = CustomerTest;

TEST_F(WatchTest, TellsOfOrdersRequestsPushesAndFaultsAsTheyCome) {
  httplib::Client client("127.0.0.1", sandbox.port());
  client.set_read_timeout(std::chrono::seconds(90));
  std::string text;
  bool isDriven = false;
  // All that is done here is told before the reset's "reload".
  const auto drive = [&] {
    app.createOrder("phone");
    take({{"POST", "/m/v1/events",
           R"({"order_id":1001,"event_type":"location_update","latitude":40.5,"longitude":-73.5})",
           200},
          {"POST", "/sandbox/orders/1001/ready", "", 200},
          {"POST", "/sandbox/pushes", R"({"push_token":"phone","payload":{"a":"b"}})", 200},
          {"POST", "/sandbox/pushes", R"({"push_token":"","payload":[]})", 422, "push_token"},
          {"POST", "/sandbox/pushes",
           R"({"push_token":"phone","payload":{"a":")" + std::string(65536, 'x') + R"("}})", 422},
          {"PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"gone","count":1})", 200},
          {"GET", "/m/v1/app?q=1", "", 410},
          {"POST", "/sandbox/reset", "", 200}});
  };
  client.Get("/sandbox/events", [&](const char* data, std::size_t length) {
    text.append(data, length);
    if (text.ends_with(kReload) && !std::exchange(isDriven, true)) drive();
    return text.rfind(kReload) == text.find(kReload);
  });
  EXPECT_THAT(text, testing::StartsWith("retry: 1000\n\n" + kReload));
  for (const char* part :
       {R"("event":{"by":"customer","customer_state":"created","event":"created","id":1,)",
        R"("event":"location_update","id":2,"latitude":40.5,"longitude":-73.5,"order_id":1001,)",
        R"("by":"merchant","customer_state":"created","event":"state_change")",
        "event: push\ndata: {\"id\":1,\"listeners\":0,\"payload\":{\"customer_state\":\"created\"",
        R"("id":2,"listeners":0,"payload":{"a":"b"},"push_token":"phone")",
        R"("method":"GET","path":"/m/v1/app?q=1","status":410,"time":"2024-05-01T12:00:00.007Z"})",
        "event: faults\ndata: {}\n\n"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST_F(WatchTest, ListsRequestsInShortAndOneInFull) {
  app.send("GET", "/m/v1/app");
  const Reply all = app.send("GET", "/sandbox/requests?summary");
  ASSERT_EQ(all.list().size(), 2U);
  const auto& last = *all.list().back().as<Dictionary>();
  EXPECT_THAT(last, testing::Not(testing::Contains(testing::Key("headers"))));
  EXPECT_GE(number(last.find("duration_ms")->second), 0);
  take({{"GET", "/sandbox/requests/2", "", 200, R"("name":"App-Version")"},
        {"GET", "/sandbox/requests/3", "", 404},
        {"DELETE", "/sandbox/requests", "", 200},
        {"GET", "/sandbox/requests/2", "", 404},
        {"GET", "/m/v1/app", "", 200},
        {"GET", "/sandbox/requests/3", "", 200, "App-Version"}});
}

TEST_F(WatchTest, SeedsAreWhatAResetBringsBack) {
  const std::string order = R"({"site_id":43,"partner_identifier":"SEEDED"})";
  take({{"PUT", "/sandbox/seed", R"({"orders":[)" + order + "]}", 200, "SEEDED"},
        {"POST", "/sandbox/orders/1001/gone", "", 200},
        {"PUT", "/sandbox/seed", R"({"orders":[{}]})", 422},
        {"POST", "/sandbox/reset", "", 200},
        {"GET", "/sandbox/orders", "", 200, R"("state":"created")"},
        {"POST", "/sandbox/orders/1001/gone", "", 200},
        {"PUT", "/sandbox/minimum-app-version/9.0", "", 200},
        {"POST", "/sandbox/seed", "", 200},
        {"GET", "/sandbox/orders/1001/events", "", 200, R"("state":"gone")"},
        {"DELETE", "/sandbox/minimum-app-version", "", 200},
        {"POST", "/sandbox/reset", "", 200},
        {"GET", "/m/v1/app", "", 425},
        {"GET", "/sandbox/orders", "", 200, R"("state":"gone")"},
        {"GET", "/sandbox/orders/1002/events", "", 404},
        {"GET", "/sandbox/orders/1001/events", "", 200, R"({"data":[]})"}});
}

TEST_F(WatchTest, FaultsStrikeAsOftenAsTheyAreTold) {
  const auto statuses = [&](const std::string& often) {
    app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"gone",)" + often + "}");
    std::string struck;
    for (int count = 0; count < 12; ++count) {
      struck += app.send("GET", "/m/v1/app").status == 410 ? 'x' : '.';
    }
    return struck;
  };
  EXPECT_EQ(statuses(R"("every":3)"), "..x..x..x..x");
  EXPECT_EQ(statuses(R"("every":2,"count":2)"), ".x.x........");
  EXPECT_EQ(statuses(R"("probability":0)"), "............");
  EXPECT_EQ(statuses(R"("probability":1)"), "xxxxxxxxxxxx");
  const std::string some = statuses(R"("probability":0.5)");
  EXPECT_THAT(std::ranges::count(some, 'x'), testing::AllOf(testing::Gt(0), testing::Lt(12)));
  take({{"PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"gone","every":0})", 422, "Every"},
        {"PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"gone","probability":2})", 422,
         "0 to 1"},
        {"GET", "/sandbox/faults/kinds", "", 200,
         R"({"method":"GET","path":"/m/v1/orders/ANY/edit"})"},
        {"GET", "/sandbox/faults/kinds", "", 200,
         R"({"name":"delay","settings":[{"name":"seconds","required":true,"type":"number"}]})"},
        {"GET", "/sandbox/faults/kinds", "", 200,
         R"({"name":"count","required":false,"type":"integer"})"}});
}

TEST_F(WatchTest, TheRootLeadsToThePageAndItsFilesAreThere) {
  const Reply root = app.send("GET", "/");
  EXPECT_EQ(root.status, 302);
  EXPECT_EQ(root.headers.find("Location")->second, "/sandbox/");
  take({{"GET", "/sandbox/", "", 200, "<title>Ovinta sandbox</title>"},
        {"GET", "/sandbox/console/map.js", "", 200, "${step / 1000} km"},
        {"GET", "/sandbox/console/none.js", "", 404},
        {"GET", "/sandbox/requests", "", 200}});
  const Reply requests = app.send("GET", "/sandbox/requests?summary");
  EXPECT_EQ(requests.list().size(), 1U) << "the page's own requests are no app's";
}

}  // namespace
}  // namespace ovinta::sandbox
