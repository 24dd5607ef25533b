#include "tests/sandbox/RawClient.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

/// Method, path, and whether only a customer is served.
constexpr std::tuple<const char*, const char*, bool> kAppRoutes[] = {
    {"GET", "/m/v1/app", false},
    {"POST", "/m/v1/customer", false},
    {"GET", "/m/v1/customer", true},
    {"PATCH", "/m/v1/customer", true},
    {"PATCH", "/m/v1/customer/sign_up", true},
    {"POST", "/m/v1/customer/sign_in", false},
    {"POST", "/m/v1/customer/password", false},
    {"PATCH", "/m/v1/customer/password", false},
    {"GET", "/m/v1/sites", false},
    {"GET", "/m/v1/orders", true},
    {"POST", "/m/v1/orders", true},
    {"GET", "/m/v1/orders/ABCDEF/edit", false},
    {"PUT", "/m/v1/orders/ABCDEF", true},
    {"POST", "/m/v1/events", true}};

using AccessTest = SandboxTest;

TEST_F(AccessTest, CustomersRoutesNeedAKnownTokenInItsForm) {
  const std::string token = app.becomeCustomer();
  for (const std::string& authorization :
       {std::string(), std::string("Token token=\"unknown\""), "Token token=" + token,
        "Bearer " + token, "Token token=\"" + token + "\" " + "x"}) {
    app.headers.erase("Authorization");
    if (!authorization.empty()) app.headers.emplace("Authorization", authorization);
    for (const auto& [method, path, needsCustomer] : kAppRoutes) {
      const Reply reply = app.send(method, path);
      EXPECT_EQ(reply.status == 401, needsCustomer)
          << method << " " << path << " with " << authorization;
      EXPECT_TRUE(reply.status != 401 || reply.errors.empty());
    }
  }
}

TEST(SandboxResetTest, ATokenCanBeNobodysOnceItsActionRuns) {
  std::atomic<bool> isArmed = false;
  // The clock is read between the check of the token and the action.
  Sandbox sandbox({.now = [&] {
    if (isArmed.exchange(false)) Speaker(sandbox).send("POST", "/sandbox/reset");
    return platform::Date{};
  }});
  ASSERT_EQ(sandbox.start(), std::nullopt);
  Speaker app(sandbox);
  for (const auto& [method, path, needsCustomer] : kAppRoutes) {
    if (!needsCustomer) continue;
    app.becomeCustomer();
    isArmed = true;
    EXPECT_EQ(app.send(method, path, R"({"name":"Bo"})").status, 401) << path;
  }
}

TEST_F(AccessTest, OldAppsAreToldToUpgradeWhileTheSwitchIsOn) {
  app.becomeCustomer();
  const std::tuple<std::string, const char*, bool> kCases[] = {
      {"1.2", "1.2", true},    {"1.10", "1.9", false}, {"1.9", "1.10", true},
      {"1.2", "1.2.0", true},  {"1.2.0", "1.2", true}, {"2", "1.99", false},
      {"1", "unknown", false}, {"1", "", false}};
  for (const auto& [minimum, version, served] : kCases) {
    SCOPED_TRACE(version + (" against " + minimum));
    app.send("PUT", "/sandbox/minimum-app-version/" + minimum);
    app.headers.erase("App-Version");
    app.headers.emplace("App-Version", version);
    for (const auto& [method, path, needsCustomer] : kAppRoutes) {
      const Reply reply = app.send(method, path);
      EXPECT_EQ(reply.status != 425, served) << method << " " << path;
      EXPECT_EQ(reply.headers.count("App-Upgrade-URL"), served ? 0u : 1u);
    }
  }
  EXPECT_EQ(app.send("DELETE", "/sandbox/minimum-app-version").status, 200);
  EXPECT_EQ(app.send("GET", "/m/v1/orders").status, 200);
}

TEST_F(AccessTest, ListsWhatAppsAskedForAndGotButNoPassword) {
  app.sendBody("GET", "/m/v1/\xff", "");
  app.sendBody("POST", "/m/v1/customer", "\xfe");
  EXPECT_THAT(app.send("GET", "/sandbox/requests").body,
              testing::AllOf(testing::HasSubstr("/m/v1/%FF"), testing::HasSubstr(R"("body":"?")")));
  app.send("DELETE", "/sandbox/requests");
  EXPECT_EQ(app.send("GET", "/sandbox/requests").list(), List{});
  app.setToken("abc");
  app.send("GET", "/m/v1/customer?x=1");
  app.sendBody("PATCH", "//m/v1/customer/password",
               R"({"data": {"password" : "s3cret\"","confirmation":"s3cret"}})");
  for (const char* body : {R"({"password":"s3cret cut short)", R"({"password" : 53137})",
                           R"({"data":{"pass\u0077ord":["a","s3cret"]}})"}) {
    app.sendBody("POST", "/m/v1/customer/sign_in", body);
  }
  const Reply reply = app.send("GET", "/sandbox/requests");
  ASSERT_EQ(reply.list().size(), 5u);
  const std::string first = platform::writeJSON(reply.list()[0]);
  EXPECT_THAT(first, testing::StartsWith(R"({"answer":"","body":"","duration_ms":)"));
  EXPECT_THAT(first,
              testing::HasSubstr(R"({"name":"Authorization","value":"Token token=\"abc\""})"));
  EXPECT_THAT(first, testing::HasSubstr(
                         R"(,"method":"GET","path":"/m/v1/customer?x=1","status":401,"time":")"));
  const std::string second = platform::writeJSON(reply.list()[1]);
  EXPECT_THAT(second, testing::HasSubstr("Reset password token is missing"));
  EXPECT_THAT(second, testing::HasSubstr(R"("body":"{\"data\": {\"password\" : )"
                                         R"(\"********\",\"confirmation\":\"********\"}}")"));
  EXPECT_THAT(reply.body, testing::Not(testing::ContainsRegex("s3cret|53137")));
}

TEST_F(AccessTest, BodiesThatCannotBeHadAreAnsweredAndListed) {
  httplib::Client client("127.0.0.1", sandbox.port());
  const auto expectRefusal = [](const httplib::Result& result, int status, const char* complaint) {
    ASSERT_TRUE(result) << complaint;
    EXPECT_EQ(result->status, status);
    EXPECT_THAT(result->body, testing::HasSubstr(complaint));
  };
  const std::string form =
      "--b\r\nContent-Disposition: form-data; name=\"x\"\r\n\r\n1\r\n--b--\r\n";
  expectRefusal(client.Post("/m/v1/customer", form, "multipart/form-data; boundary=b"), 415,
                "Body must be JSON");
  const std::string longBody = R"({"data":{"name":")" + std::string(2 << 20, 'a') + "\"}}";
  const auto sendInChunks = [&longBody](std::size_t, httplib::DataSink& sink) {
    sink.write(longBody.data(), longBody.size());
    sink.done();
    return true;
  };
  const char* const tooLong = "Body is longer than 1048576 bytes";
  expectRefusal(client.Post("/m/v1/customer", longBody, ""), 413, tooLong);
  expectRefusal(client.Post("/m/v1/customer", sendInChunks, ""), 413, tooLong);
  expectRefusal(client.Options("/api/m/v1/app"), 404, "Path is unknown");
  EXPECT_EQ(app.send("GET", "/sandbox/requests").list().size(), 4u);
  const std::string snapshot = R"({"data":{)" + std::string(2 << 20, ' ') + "}}";
  EXPECT_EQ(app.sendBody("PUT", "/sandbox/snapshot", snapshot).status, 200);
}

/// What comes back for the request and, when it was answered, for the last one.
std::string askTwice(int port, const std::string& request, const std::string& last) {
  const RawClient client(port);
  client.send(request);
  EXPECT_TRUE(client.isAnswered(std::chrono::seconds(30))) << request;
  return client.ask(last);
}

std::size_t count(std::string_view text, std::string_view part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
    ++found;
  }
  return found;
}

TEST_F(AccessTest, AClientMaySendItsNextRequestOverTheSameConnection) {
  const std::string get = "GET /m/v1/app HTTP/1.1\r\nHost: localhost\r\n";
  const std::string post = "POST /m/v1/customer HTTP/1.1\r\nHost: localhost\r\n";
  const std::pair<std::string, bool> cases[] = {
      {get + "\r\n", true},
      {get + "Connection: Keep-Alive\r\n\r\n", true},
      {post + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n", true},
      {post + "Content-Length: 2\r\n\r\n{}\r\n", true},
      {get + "Content-Length: 8\r\n\r\nGET /m/v", true},
      {get + "Connection: Close\r\n\r\n", false},
      {get + "Connection: TE, close\r\n\r\n", false},
      {get + "\r\n" + get + "\r\n", false},
      {"GET /m/v1/app HTTP/1.1\r\n\r\n", false},
      {"GET /m/v1/app HTTP/1.0\r\nHost: localhost\r\n\r\n", false},
      {"BREW /m/v1/app HTTP/1.1\r\nHost: localhost\r\n\r\n", false}};
  std::size_t listed = 0;
  for (const auto& [request, isKept] : cases) {
    // Some clients send the end of a line after a body.
    const std::string answers =
        askTwice(sandbox.port(), request, "\r\n" + get + "Connection: close\r\n\r\n");
    listed += isKept ? 2 : 1;
    EXPECT_EQ(count(answers, "HTTP/1.1 "), isKept ? 2U : 1U) << request << answers;
    EXPECT_EQ(count(answers, "Connection: close\r\n"), 1U) << request << answers;
    EXPECT_EQ(count(answers, "Keep-Alive: "), isKept ? 1U : 0U) << request << answers;
  }
  EXPECT_EQ(app.send("GET", "/sandbox/requests").list().size(), listed);
}

TEST(SandboxPatienceTest, AConnectionThatWasKeptEndsWithoutAWord) {
  Sandbox sandbox({.patience = std::chrono::milliseconds(20)});
  ASSERT_EQ(sandbox.start(), std::nullopt);
  std::string answer;
  // On a busy machine the request itself may be too slow.
  for (int i = 0; i < 100 && !answer.starts_with("HTTP/1.1 200"); ++i) {
    answer = RawClient(sandbox.port()).ask("GET /m/v1/app HTTP/1.1\r\nHost: localhost\r\n\r\n");
  }
  EXPECT_THAT(answer, testing::StartsWith("HTTP/1.1 200"));
  EXPECT_EQ(count(answer, "HTTP/1.1 "), 1U) << answer;
}

TEST_F(AccessTest, ListsWhatTheHTTPLibraryRefusesBeforeItsClientIsTold) {
  const std::string answer =
      RawClient(sandbox.port()).ask("BREW /m/v1/app HTTP/1.1\r\nX-Pot: tea\r\n\r\n");
  EXPECT_THAT(answer, testing::StartsWith("HTTP/1.1 400 Bad Request\r\n"));
  EXPECT_THAT(answer, testing::EndsWith(R"({"errors":{"request":["Request is no HTTP"]}})"));
  EXPECT_THAT(
      app.send("GET", "/sandbox/requests").body,
      testing::AllOf(
          testing::StartsWith(
              R"({"data":[{"answer":"{\"errors\":{\"request\":[\"Request is no HTTP\"]}}","body":"",)"),
          testing::HasSubstr(R"("headers":[{"name":"X-Pot","value":"tea"}],"id":1,)"
                             R"("method":"BREW","path":"/m/v1/app","status":400,)")));
}

class AppTokenTest : public SandboxTest {
 protected:
  AppTokenTest() : SandboxTest({.appToken = "app", .minimumAppVersion = "1.2"}) {}
};

TEST_F(AppTokenTest, IsDemandedOfAppsWhenTheOptionsSaySo) {
  const std::tuple<httplib::Headers, const char*, int> kCases[] = {
      {{{"App-Version", "1.2"}}, "/m/v1/app", 401},
      {{{"App-Version", "1.2"}, {"App-Token", "other"}}, "/m/v1/app", 401},
      {{{"App-Version", "1.2"}, {"App-Token", "app"}}, "/m/v1/app", 200},
      {{{"App-Token", "app"}}, "/m/v1/app", 425},
      {{}, "/sandbox/requests", 200}};
  for (const auto& [headers, path, status] : kCases) {
    app.headers = headers;
    EXPECT_EQ(app.send("GET", path).status, status);
  }
}

TEST_F(AccessTest, APortInUseIsAnError) {
  Sandbox second({.port = sandbox.port()});
  const auto error = second.start();
  ASSERT_TRUE(error);
  EXPECT_THAT(*error, testing::HasSubstr(std::to_string(sandbox.port())));
  EXPECT_EQ(second.port(), 0);
  const int port = sandbox.port();
  sandbox.stop();
  Sandbox third({.port = port});
  EXPECT_EQ(third.start(), std::nullopt);
  EXPECT_EQ(third.baseURL(), "http://127.0.0.1:" + std::to_string(port));
}

}  // namespace
}  // namespace ovinta::sandbox
