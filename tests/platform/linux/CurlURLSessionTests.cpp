// What goes over the wire, and what of it reaches the completion.
#include <gtest/gtest.h>

#include <future>

#include "tests/platform/linux/CurlURLSessionFixture.h"
#include "tests/support/LocalServer.h"

namespace ovinta::platform::linux {
namespace {

using test::httpAnswer;
using test::LocalServer;
using test::ReceivedRequest;
using test::ServerConnection;
using Headers = std::vector<HeaderField>;
using namespace std::chrono_literals;

class CurlURLSessionTest : public CurlURLSessionFixture {};

std::string lines(const Headers& headers) {
  std::string text;
  for (const auto& [name, value] : headers) text += name + ": " + value + "\n";
  return text;
}

TEST_F(CurlURLSessionTest, SendsExactlyTheRequest) {
  const std::string large = std::string(3'000'000, 'x') + std::string(1, '\0') + "\xff\r\n";
  const Headers odd{
      {"Z-Last", "\"quoted\"; x=1"}, {"Accept", "a/b"}, {"Empty", ""}, {"z-last", "2"}};
  const struct {
    std::string method, target;
    Headers headers;
    std::optional<std::string> body;
    /// After that of the host.
    std::string expectedHeaders;
  } requests[] = {
      {"GET", "/", {}, {}, ""},
      {"GET", "/m/v1/orders", odd, {}, lines(odd)},
      {"GET", "/a/../b/./%2e%2e//c?x=%2B+&y=?", {}, {}, ""},
      {"POST", "/m", {{"User-Agent", "me"}}, "{}", "Content-Length: 2\nUser-Agent: me\n"},
      {"POST", "/", {}, {}, "Content-Length: 0\n"},
      {"PATCH",
       "/",
       {{"Content-Length", "3"}, {"Transfer-Encoding", "chunked"}},
       large,
       "Content-Length: " + std::to_string(large.size()) + "\n"},
      {"GET", "/", {}, "b", "Content-Length: 1\n"},
      {"HEAD", "/", {{"A", "b"}}, {}, "A: b\n"}};
  for (const auto& [method, target, headers, body, expectedHeaders] : requests) {
    SCOPED_TRACE(method + " " + target);
    std::promise<ReceivedRequest> received;
    LocalServer server(LocalServer::answering([&](const ReceivedRequest& request) {
      received.set_value(request);
      return request.method == "HEAD" ? "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n"
                                      : httpAnswer("200 OK", "done");
    }));
    const auto outcome =
        fetch({.url = {server.url(target)}, .method = method, .headers = headers, .body = body});
    EXPECT_EQ(outcome.data, method == "HEAD" ? "" : "done") << outcome.sentence();
    const auto request = received.get_future().get();
    const auto host = "Host: 127.0.0.1:" + std::to_string(server.port()) + "\n";
    EXPECT_EQ(lines(request.headers), host + expectedHeaders);
    EXPECT_EQ(request.method, method);
    EXPECT_EQ(request.target, target);
    EXPECT_EQ(request.body, body.value_or(""));
  }
}

struct AnswerCase {
  const char* name;
  std::string bytes;
  int statusCode;
  /// Each field as a line.
  std::string headers;
  std::string data;
};

const AnswerCase kReceives[] = {
    {"binary body",
     "HTTP/1.1 200 OK\r\nContent-Length: 4\r\nx-B:  two words \r\n\r\n" +
         std::string("a\0\r\xff", 4),
     200, "Content-Length: 4\nx-B: two words\n", std::string("a\0\r\xff", 4)},
    {"no body", "HTTP/1.1 204 No Content\r\n\r\n", 204, "", ""},
    {"no reason", "HTTP/1.1 202\r\n\r\nuntil the end", 202, "", "until the end"},
    {"fields twice, empty and folded", "HTTP/1.1 200 OK\r\nA: 1\r\nB:\r\na: 2\r\n\t+ 3 \r\n\r\n",
     200, "A: 1\nB: \na: 2 + 3\n", ""},
    {"chunked with trailer",
     "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\nLate: "
     "1\r\n\r\n",
     200, "Transfer-Encoding: chunked\n", "abcde"},
    {"after interim answer",
     "HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" + httpAnswer("200 OK", "late"), 200,
     "Content-Length: 4\n", "late"},
    {"not compressed by request", httpAnswer("200 OK", "\x1f\x8b", "Content-Encoding: gzip\r\n"),
     200, "Content-Encoding: gzip\nContent-Length: 2\n", "\x1f\x8b"}};

TEST_F(CurlURLSessionTest, ReceivesEveryCompleteAnswer) {
  for (const auto& answer : kReceives) {
    SCOPED_TRACE(answer.name);
    LocalServer server([&](ServerConnection& connection) {
      connection.readRequest();
      connection.send(answer.bytes);
    });
    const auto outcome = get(server.url());
    ASSERT_TRUE(outcome.response && outcome.data) << outcome.sentence();
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.response->statusCode, answer.statusCode);
    EXPECT_EQ(lines(outcome.response->headers), answer.headers);
    EXPECT_EQ(*outcome.data, answer.data);
  }
}

const char* const kLost = "The network connection was lost.";
const char* const kBadAnswer = "The server gave a bad answer.";
const char* const kTooLarge = "The answer of the server is too large.";
const char* const kTimedOut = "The request timed out.";
constexpr std::size_t kBodyLimit = 1000;

struct FailureCase {
  const char* name;
  std::string bytes;
  bool reset;
  const char* sentence;
  int statusCode;
};

const FailureCase kFails[] = {
    {"closedBeforeAnswer", "", false, kLost, 0},
    {"resetBeforeAnswer", "", true, kLost, 0},
    {"closedAfterInterimAnswer", "HTTP/1.1 100 Continue\r\n\r\n", false, kLost, 0},
    {"closedInBody", "HTTP/1.1 201 OK\r\nContent-Length: 9\r\n\r\n12345678", false, kLost, 201},
    {"noStatusLine", "Hello there\r\n\r\n", false, kBadAnswer, 0},
    {"malformedHeader", "HTTP/1.1 200 OK\r\nno colon\r\n\r\n", false, kBadAnswer, 0},
    {"tooLarge", httpAnswer("200 OK", std::string(kBodyLimit + 1, 'x')), false, kTooLarge, 200},
    {"tooLargeWithoutLength", "HTTP/1.1 200 OK\r\n\r\n" + std::string(kBodyLimit + 1, 'x'), false,
     kTooLarge, 200}};

TEST_F(CurlURLSessionTest, FailsOnIncompleteAnswers) {
  for (const auto& failure : kFails) {
    SCOPED_TRACE(failure.name);
    restart({.maximumBodySize = kBodyLimit});
    LocalServer server([&](ServerConnection& connection) {
      connection.readRequest();
      connection.send(failure.bytes);
      if (failure.reset) connection.reset();
    });
    const auto outcome = get(server.url());
    EXPECT_EQ(outcome.sentence(), failure.sentence);
    EXPECT_EQ(outcome.statusCode(), failure.statusCode);
    EXPECT_EQ(outcome.data, std::nullopt);
  }
}

TEST_F(CurlURLSessionTest, AcceptsAnAnswerOfJustTheLargestSize) {
  restart({.maximumBodySize = kBodyLimit});
  LocalServer server(LocalServer::answering(
      [](const auto&) { return httpAnswer("200 OK", std::string(kBodyLimit, 'x')); }));
  EXPECT_EQ(get(server.url()).data, std::string(kBodyLimit, 'x'));
}

TEST_F(CurlURLSessionTest, AsksCachesOnTheWayToStandAside) {
  std::promise<ReceivedRequest> received;
  LocalServer server(LocalServer::answering([&](const ReceivedRequest& request) {
    received.set_value(request);
    return httpAnswer("200 OK");
  }));
  fetch({.url = {server.url()},
         .headers = {{"A", "b"}},
         .cachePolicy = CachePolicy::reloadIgnoringLocalAndRemoteCacheData});
  const Headers expected{{"Host", "127.0.0.1:" + std::to_string(server.port())},
                         {"Cache-Control", "no-cache"},
                         {"A", "b"}};
  EXPECT_EQ(received.get_future().get().headers, expected);
}

TEST_F(CurlURLSessionTest, FailsWithoutAServer) {
  auto server = std::make_optional<LocalServer>([](ServerConnection&) {});
  const auto url = server->url();
  server.reset();
  EXPECT_EQ(get(url).sentence(), "Could not connect to the server.");
  EXPECT_EQ(get("http://a..b/").sentence(), "The server could not be found.");
  for (const char* unsupported :
       {"", "127.0.0.1", "ftp://127.0.0.1/", "file:///etc/passwd", "/m"}) {
    EXPECT_EQ(get(unsupported).sentence(), "The URL is not supported.") << unsupported;
  }
}

TEST_F(CurlURLSessionTest, RefusesWhatWouldBreakOutOfItsLine) {
  LocalServer server(LocalServer::answering([](const auto&) { return httpAnswer("200 OK"); }));
  const auto sentenceFor = [&](const std::string& method, HeaderField field) {
    return fetch({.url = {server.url()}, .method = method, .headers = {std::move(field)}})
        .sentence();
  };
  const std::string refusal = "The request is not well-formed.";
  EXPECT_EQ(sentenceFor("GET", {"A", "1\r\nB: 2"}), refusal);
  EXPECT_EQ(sentenceFor("GET", {"A", std::string("1\0", 2)}), refusal);
  EXPECT_EQ(sentenceFor("GET", {"A: 1\nB", "2"}), refusal);
  EXPECT_EQ(sentenceFor("GET", {"", "2"}), refusal);
  EXPECT_EQ(sentenceFor("GET / HTTP/1.1\r\nA:", {"A", "1"}), refusal);
  EXPECT_EQ(server.connectionCount(), 0u);
  EXPECT_EQ(sentenceFor("GET", {"A", "b:\t\"c\" \xc3\xa9"}), "");
}

TEST_F(CurlURLSessionTest, TimesOutWhenAServerIsSilent) {
  LocalServer silent([](ServerConnection& connection) { connection.waitForClose(); });
  const auto outcome = fetch({.url = {silent.url()}, .timeout = 50ms});
  EXPECT_EQ(outcome.sentence(), kTimedOut);
  EXPECT_EQ(outcome.statusCode(), 0);

  // A secure connection that is never agreed upon is no progress either.
  const auto url = "https" + silent.url().substr(4);
  EXPECT_EQ(fetch({.url = {url}, .timeout = 50ms}).sentence(), kTimedOut);
}

TEST_F(CurlURLSessionTest, TimesOutWhenABodyStops) {
  restart({.now = [this] { return clock_.now(); }});
  LocalServer server([&](ServerConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n123");
    clock_.run();
    connection.waitForClose();
  });
  const auto outcome = fetch({.url = {server.url()}, .timeout = 100ms});
  EXPECT_EQ(outcome.sentence(), kTimedOut);
  EXPECT_EQ(outcome.statusCode(), 200);
  EXPECT_EQ(outcome.data, std::nullopt);
}

TEST_F(CurlURLSessionTest, ProgressPutsTheTimeoutOff) {
  restart({.now = [this] { return clock_.now(); }});
  LocalServer server([&](ServerConnection& connection) {
    connection.readRequest();
    for (const char* part :
         {"HTTP/1.1 200 OK\r\n", "A: b\r\n", "Content-Length: 4\r\n", "\r\n", "d", "a", "t", "a"}) {
      const int looks = clock_.looks();
      clock_.advance(6s);
      connection.send(part);
      clock_.waitForMoreLooksThan(looks);
    }
  });
  EXPECT_EQ(fetch({.url = {server.url()}, .timeout = 10s}).data, "data");
  clock_.release();
}

}  // namespace
}  // namespace ovinta::platform::linux
