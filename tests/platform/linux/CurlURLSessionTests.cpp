// What goes over the wire, and what of it reaches the completion.
#include <gtest/gtest.h>

#include <future>

#include "tests/platform/linux/CurlURLSessionFixture.h"
#include "tests/support/LocalServer.h"

namespace ovinta::platform::linuxos {
namespace {

using test::httpAnswer;
using test::LocalServer;
using test::ReceivedRequest;
using test::ServerConnection;
using Headers = std::vector<HeaderField>;

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
    CachePolicy cachePolicy = {};
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
      {"GET",
       "/",
       {{"A", "b"}},
       {},
       "Cache-Control: no-cache\nA: b\n",
       CachePolicy::reloadIgnoringLocalAndRemoteCacheData},
      {"HEAD", "/", {{"A", "b"}}, {}, "A: b\n"}};
  for (const auto& [method, target, headers, body, expectedHeaders, cachePolicy] : requests) {
    SCOPED_TRACE(method + " " + target);
    std::promise<ReceivedRequest> received;
    LocalServer server(LocalServer::answering([&](const ReceivedRequest& request) {
      received.set_value(request);
      return request.method == "HEAD" ? "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n"
                                      : httpAnswer("200 OK", "done");
    }));
    const auto outcome = fetch({.url = {server.url(target)},
                                .method = method,
                                .headers = headers,
                                .body = body,
                                .cachePolicy = cachePolicy});
    EXPECT_EQ(outcome.data, method == "HEAD" ? "" : "done") << outcome.sentence();
    const auto request = received.get_future().get();
    const auto host = "Host: 127.0.0.1:" + std::to_string(server.port()) + "\n";
    EXPECT_EQ(lines(request.headers), host + expectedHeaders);
    EXPECT_EQ(request.method, method);
    EXPECT_EQ(request.target, target);
    EXPECT_EQ(request.body, body.value_or(""));
  }
}

/// Each field of the answer as a line, and its body.
const std::tuple<const char*, std::string, std::string> kReceives[] = {
    {"HTTP/1.1 200 OK\r\nContent-Length: 4\r\nx-B:  two words \r\n\r\n\xff\r\nx",
     "Content-Length: 4\nx-B: two words\n", "\xff\r\nx"},
    {"HTTP/1.1 204 No Content\r\n\r\n", "", ""},
    {"HTTP/1.1 202\r\n\r\nuntil the end", "", "until the end"},
    {"HTTP/1.1 200 OK\r\nA: 1\rx\r\nB:\r\na: 2\r\n\t+ 3 \r\n\r\n", "A: 1 x\nB: \na: 2 + 3\n", ""},
    {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\nLate: "
     "1\r\n\r\n",
     "Transfer-Encoding: chunked\n", "abcde"},
    {"HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\nHTTP/1.1 200 OK\r\n\r\nlate", "", "late"},
    {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n\x1f\x8b", "Content-Encoding: gzip\n",
     "\x1f\x8b"}};

TEST_F(CurlURLSessionTest, ReceivesEveryCompleteAnswer) {
  for (const auto& [bytes, headers, data] : kReceives) {
    SCOPED_TRACE(bytes);
    LocalServer server([answer = bytes](ServerConnection& connection) {
      connection.readRequest();
      connection.send(answer);
    });
    const auto outcome = get(server.url());
    EXPECT_EQ(outcome.sentence(), "");
    const std::string_view sent(bytes);
    EXPECT_EQ(outcome.statusCode(),
              std::stoi(std::string(sent.substr(sent.rfind("HTTP/1.1 ") + 9))));
    EXPECT_EQ(lines(outcome.response.value().headers), headers);
    EXPECT_EQ(outcome.data, data);
  }
}

// What the sandbox can play is tested with the library's operations.
TEST_F(CurlURLSessionTest, FailsOnIncompleteAnswers) {
  const std::string lost = "The network connection was lost.";
  const std::string bad = "The server gave a bad answer.";
  const std::tuple<std::string, std::string, int> cases[] = {
      {"", lost, 0},
      {"HTTP/1.1 100 Continue\r\n\r\n", lost, 0},
      {"HTTP/1.1 201 OK\r\nContent-Length: 9\r\n\r\n12345678", lost, 201},
      {"Hello there\r\n\r\n", bad, 0},
      {"HTTP/1.1 200 OK\r\nno colon\r\n\r\n", bad, 0}};
  for (const auto& [bytes, sentence, statusCode] : cases) {
    LocalServer server([sent = bytes](ServerConnection& connection) {
      connection.readRequest();
      connection.send(sent);
    });
    const auto outcome = get(server.url());
    EXPECT_EQ(outcome.sentence(), sentence) << bytes;
    EXPECT_EQ(outcome.statusCode(), statusCode) << bytes;
    EXPECT_EQ(outcome.data, std::nullopt) << bytes;
  }
}

TEST_F(CurlURLSessionTest, FailsWithoutAServer) {
  auto server = std::make_optional<LocalServer>([](ServerConnection&) {});
  const auto url = server->url();
  server.reset();
  EXPECT_EQ(get(url).sentence(), "Could not connect to the server.");
  EXPECT_EQ(get("http://a..b/").sentence(), "The server could not be found.");
  for (const char* unsupported : {"", "127.0.0.1", "ftp://127.0.0.1/", "file:///etc/passwd", "/m",
                                  "http://", "http:// a/", "https://[", "http://a:99999/"}) {
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

TEST_F(CurlURLSessionTest, SendsNothingUnlessAllItReliesOnIsSet) {
  // Longer than libcurl takes any text.
  const std::string tooLong(9'000'000, 'A');
  LocalServer server(LocalServer::answering([](const auto&) { return httpAnswer("200 OK"); }));
  EXPECT_EQ(fetch({.url = {server.url()}, .method = tooLong}).sentence(),
            "The request is not well-formed.");
  restart({.caFile = tooLong});
  EXPECT_EQ(get(server.url()).data, std::nullopt) << "sent though nobody could be believed";
  EXPECT_EQ(server.connectionCount(), 0u);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
