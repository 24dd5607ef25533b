#include <cstdlib>
#include <future>
#include <tuple>
#include <vector>

#include "platform/linux/http/CurlURLSession.h"
#include "tests/sandbox/RawClient.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using std::chrono::milliseconds;

/// What comes back for a request for the configuration, with a mark when the connection was reset.
std::string askForConfiguration(int port) {
  return RawClient(port).ask("GET /m/v1/app HTTP/1.1\r\nHost: localhost\r\n\r\n");
}

class FaultTest : public CustomerTest {
 protected:
  FaultTest() : CustomerTest({.pause = [this](milliseconds time) { pauses.push_back(time); }}) {}

  std::vector<milliseconds> pauses;
};

TEST_F(FaultTest, StrikesOneEndpointAsOftenAsItWasTold) {
  const std::string faults = "/sandbox/faults";
  const std::string update = faults + "/PUT/m/v1/orders";
  const std::string list = faults + "/GET/m/v1/orders";
  const std::string listed =
      R"([{"count":1,"fault":"gone","method":"GET","path":"/m/v1/orders"},)"
      R"({"body":"no","fault":"status","method":"PUT","path":"/m/v1/orders/{code}","status":503}])";
  take({{"PUT", update + "/{code}", R"({"fault":"status","status":503,"body":"no"})", 200},
        {"PUT", list, R"({"fault":"gone"})", 200},
        {"PUT", list, R"({"fault":"gone","count":2})", 200},
        {"GET", "/m/v1/orders", "", 410},
        {"GET", faults, "", 200, listed},
        {"GET", "/m/v1/orders", "", 410},
        {"GET", "/m/v1/orders", "", 200},
        {"PUT", "/m/v1/orders/ABCDEF", "{}", 503},
        {"PUT", "/m/v1/orders/GHIJKL", "{}", 503},
        {"PUT", faults + "/GET/m/v1/app", R"({"fault":"gone"})", 200},
        {"DELETE", update + "/ABCDEF", "", 200, R"([{"fault":"gone")"},
        {"PUT", "/m/v1/orders/ABCDEF", "{}", 404},
        {"GET", "/m/v1/app", "", 410},
        {"DELETE", faults, "", 200, "[]"},
        {"GET", "/m/v1/app", "", 200}});
}

TEST_F(FaultTest, DoesTheWorkUnlessTheFaultTakesItsPlace) {
  const std::pair<const char*, bool> cases[] = {{R"("status","status":500)", false},
                                                {R"("delay","seconds":0.25)", true},
                                                {R"("cut_short")", true},
                                                {R"("answer_lost")", true},
                                                {R"("reset")", false},
                                                {R"("reset_in_body")", true},
                                                {R"("wrong_types")", true},
                                                {R"("oversize_body","length":9)", false}};
  std::size_t orders = 0;
  for (const auto& [fault, works] : cases) {
    app.send("PUT", "/sandbox/faults/POST/m/v1/orders",
             std::string(R"({"count":1,"fault":)") + fault + "}");
    app.createOrder();
    orders += works ? 1 : 0;
    EXPECT_EQ(app.send("GET", "/m/v1/orders").list().size(), orders) << fault;
  }
  EXPECT_EQ(pauses, std::vector{milliseconds(250)});
}

TEST_F(FaultTest, SpoilsTheTransmission) {
  const std::string body = app.send("GET", "/m/v1/app").body;
  const std::string half = body.substr(0, body.size() / 2);
  const auto answer = [](std::size_t length, const std::string& content) {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + std::to_string(length) +
           "\r\nContent-Type: application/json\r\n\r\n" + content;
  };
  const std::pair<const char*, std::string> cases[] = {
      {R"("cut_short")", answer(body.size(), half)},
      {R"("reset")", "(reset)"},
      {R"("answer_lost")", "(reset)"},
      {R"("reset_in_body")", answer(body.size(), half + "(reset)")},
      {R"("wrong_content_length")", answer(half.size(), body)},
      {R"("oversize_body","length":5000)", answer(5000, std::string(5000, ' '))}};
  for (const auto& [fault, expected] : cases) {
    // It is the last of its kind, so that nothing but what it does ends the connection.
    app.send("PUT", "/sandbox/faults/GET/m/v1/app",
             std::string(R"({"count":1,"fault":)") + fault + "}");
    EXPECT_EQ(askForConfiguration(sandbox.port()), expected) << fault;
  }
}

TEST_F(FaultTest, StrikesAllEndpointsWhileItsTimeLasts) {
  const std::string faults = "/sandbox/faults";
  const std::string all = faults + "/ANY/ANY";
  const std::string orders = faults + "/GET/m/v1/orders";
  take({{"PUT", all, R"({"fault":"gone","after":60,"for":30})", 200},
        {"PUT", orders, R"({"fault":"status","status":429,"retry_after":7,"after":59.5})", 200},
        {"GET", "/m/v1/app", "", 200},
        {"GET", "/m/v1/orders", "", 200},
        {"GET", faults, "", 200,
         R"([{"after":60,"fault":"gone","for":30,"method":"ANY","path":"/ANY"},{"after":59.5,)"}});
  advance(std::chrono::seconds(60));
  take({{"GET", "/m/v1/app", "", 410},
        {"POST", "/m/v1/orders", "", 410},
        {"GET", "/m/v1/sites", "", 410},
        {"GET", "/m/v1/orders", "", 429},
        {"DELETE", orders, "", 200, R"([{"fault":"gone","for":30,)"},
        {"GET", "/m/v1/orders", "", 410},
        {"PUT", orders, R"({"fault":"status","status":503,"retry_after":120})", 200}});
  EXPECT_EQ(app.send("GET", "/m/v1/orders").headers.find("Retry-After")->second, "120");
  advance(std::chrono::seconds(29));
  take({{"GET", "/m/v1/app", "", 410}, {"GET", faults, "", 200, R"("for":1)"}});
  advance(std::chrono::seconds(1));
  take({{"GET", "/m/v1/app", "", 200},
        {"DELETE", orders, "", 200, "[]"},
        {"PUT", all, R"({"fault":"gone","count":2})", 200},
        {"GET", "/m/v1/app", "", 410},
        {"GET", "/m/v1/sites", "", 410},
        {"GET", "/m/v1/app", "", 200},
        {"PUT", all, R"({"fault":"gone"})", 200},
        {"DELETE", all, "", 200, "[]"},
        {"GET", "/m/v1/app", "", 200},
        {"PUT", all, R"({"fault":"gone","for":-1})", 422, "For must be a number from 0"},
        {"PUT", all, R"({"fault":"gone","after":"1"})", 422, "After must be a number from 0"},
        {"PUT", all, R"({"fault":"gone","retry_after":1})", 422, "is no setting of this fault"}});
}

TEST_F(FaultTest, IsMetByAnAppThatKeepsItsConnectionOnceAndAsByAnyOther) {
  setenv("no_proxy", "*", 1);
  platform::linuxos::CurlURLSession session;
  const auto ask = [&](const char* method, const std::string& path) {
    std::promise<int> status;
    session.startDataTask({.url = {sandbox.baseURL() + path}, .method = method},
                          [&](const auto&, const auto& response, const auto&) {
                            status.set_value(response ? response->statusCode : 0);
                          });
    return status.get_future().get();
  };
  const std::tuple<const char*, std::string, int> cases[] = {{"GET", "/m/v1/app", 200},
                                                             {"POST", "/m/v1/customer", 422}};
  for (const auto& [method, path, status] : cases) {
    EXPECT_EQ(ask(method, path), status);
    app.send("PUT", "/sandbox/faults/" + std::string(method) + path,
             R"({"fault":"reset","count":2})");
    app.send("DELETE", "/sandbox/requests");
    EXPECT_EQ(ask(method, path), 0);
    EXPECT_EQ(ask("PATCH", "/m/v1/app"), 404);
    EXPECT_EQ(ask(method, path), 0);
    EXPECT_EQ(app.send("GET", "/sandbox/requests").list().size(), 3U);
    EXPECT_EQ(ask(method, path), status);
  }
}

TEST_F(FaultTest, ARedirectionToTheSameUrlKeepsItsOrigin) {
  const std::string path = "//m/v1/customer/password";
  app.send("PUT", "/sandbox/faults/POST" + path, R"({"fault":"redirect_same_origin"})");
  const Reply reply = app.send("POST", path);
  EXPECT_EQ(reply.headers.find("Location")->second, sandbox.baseURL() + path);
}

TEST_F(FaultTest, LeavesTheTesterThreads) {
  app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers"})");
  std::vector<std::future<int>> answers;
  answers.reserve(40);
  for (int i = 0; i < 40; ++i) {
    answers.push_back(std::async(std::launch::async, [port = sandbox.port()] {
      const auto result = httplib::Client("127.0.0.1", port).Get("/m/v1/app");
      return result ? result->status : 0;
    }));
  }
  // The one that made the customer is listed as well.
  for (int i = 0; i < 9999 && app.send("GET", "/sandbox/requests").list().size() < 41; ++i) {
  }
  app.send("PUT", "/sandbox/faults/GET/m/v1/orders", R"({"fault":"reset_in_body"})");
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 503);
  sandbox.stop();
  EXPECT_EQ(std::ranges::count_if(answers, [](auto& answer) { return answer.get() == 503; }), 16);
}

TEST_F(FaultTest, SilenceEndsWithTheClient) {
  app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers"})");
  // More than can wait at the same time.
  for (int i = 0; i < 50; ++i) {
    httplib::Client client("127.0.0.1", sandbox.port());
    client.set_read_timeout(0, 1);
    EXPECT_EQ(client.Get("/m/v1/app").error(), httplib::Error::Read);
    EXPECT_EQ(app.send("GET", "/sandbox/faults").status, 200);
  }
}

using WaitingTest = SandboxTest;

TEST_F(WaitingTest, EndsWithTheFaultOrTheService) {
  for (const bool isCleared : {true, false}) {
    app.send("PUT", "/sandbox/faults/GET/m/v1/app", R"({"fault":"never_answers","count":1})");
    app.send("PUT", "/sandbox/faults/GET/m/v1/orders",
             R"({"fault":"delay","seconds":3600,"count":1})");
    std::vector<std::future<bool>> answered;
    for (const char* path : {"/m/v1/app", "/m/v1/orders"}) {
      answered.push_back(std::async(std::launch::async, [port = sandbox.port(), path] {
        return httplib::Client("127.0.0.1", port).Get(path).error() == httplib::Error::Success;
      }));
    }
    // A fault that has struck as often as it was told is no longer listed.
    for (int i = 0; i < 9999 && !app.send("GET", "/sandbox/faults").list().empty(); ++i) {
    }
    if (isCleared) {
      app.send("DELETE", "/sandbox/faults");
    } else {
      sandbox.stop();
    }
    EXPECT_FALSE(answered[0].get());
    EXPECT_EQ(answered[1].get(), isCleared);
  }
}

TEST_F(WaitingTest, ForAClientThatPausesDoesNotHoldUpTheEnd) {
  const RawClient silent(sandbox.port());
  const RawClient kept(sandbox.port());
  kept.send("GET /m/v1/app HTTP/1.1\r\nHost: localhost\r\n\r\n");
  // Whoever came before is served by now.
  app.send("GET", "/sandbox/faults");
  const auto start = std::chrono::steady_clock::now();
  sandbox.stop();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_THAT(kept.answer(), testing::EndsWith("}"));
}

}  // namespace
}  // namespace ovinta::sandbox
