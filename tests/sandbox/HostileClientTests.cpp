#include <sys/resource.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/http/IncomingRequest.h"
#include "tests/sandbox/RawClient.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string text(std::size_t count, std::string_view part) {
  std::string result;
  for (std::size_t index = 0; index < count; ++index) result += part;
  return result;
}

/// Lets the process have so many files, or as many as it may; answers how many it could have
/// before.
rlim_t setMostFiles(rlim_t count) {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  const rlim_t before = std::exchange(limit.rlim_cur, std::min(count, limit.rlim_max));
  ::setrlimit(RLIMIT_NOFILE, &limit);
  return before;
}

/// Whoever is waited for here is waited for beyond all patience of the test's.
class HostileClientTest : public SandboxTest {
 protected:
  HostileClientTest()
      : SandboxTest({.patience = std::chrono::hours(1), .memory = std::size_t{1} << 30}) {}

  std::string ask(const std::string& request) const {
    return RawClient(sandbox.port()).ask(request);
  }

  /// Whether an app is served.
  bool serves() const { return ask("GET /m/v1/app HTTP/1.1\r\n\r\n").starts_with("HTTP/1.1 200"); }
};

TEST_F(HostileClientTest, PagesOfOtherSitesAreRefused) {
  const std::string port = std::to_string(sandbox.port());
  const std::tuple<std::string, const char*, const char*> kCases[] = {
      {"", "200", ""},
      {"Host: 127.0.0.1:" + port, "200", ""},
      {"host: LOCALHOST", "200", ""},
      {"Host: [::1]:9", "200", ""},
      {"Host: 127.8.9.1", "200", ""},
      {"Host: evil.example", "403", "Host must name this machine"},
      {"Host: evil.example:" + port, "403", "Host must"},
      {"Host: 127.0.0.1.evil.example", "403", "Host must"},
      {"Host: localhost.evil.example", "403", "Host must"},
      {"Host: 127.0.0.1:" + port + "@evil.example", "403", "Host must"},
      {"Host: 192.168.0.1", "403", "Host must"},
      {"Host: ", "403", "Host must"},
      {"Host: localhost\r\nHost: evil.example", "403", "Host must"},
      {"Host: localhost:" + port + "\r\nOrigin: http://localhost:" + port, "200", ""},
      {"Host: localhost:" + port + "\r\nOrigin: http://evil.example", "403", "Origin must be"},
      {"Host: localhost:" + port + "\r\nOrigin: http://localhost:1", "403", "Origin must be"},
      {"Host: localhost:" + port + "\r\nOrigin: https://localhost:" + port, "403", "Origin must"},
      {"Host: localhost\r\nOrigin: null", "403", "Origin must be"},
      {"Host: localhost\r\nSec-Fetch-Site: same-origin", "200", ""},
      {"Host: localhost\r\nSec-Fetch-Site: none", "200", ""},
      {"Host: localhost\r\nSec-Fetch-Site: cross-site", "403", "Origin must be"}};
  for (const char* request : {"GET /m/v1/app", "GET /sandbox/customers", "POST /sandbox/reset"}) {
    for (const auto& [fields, status, complaint] : kCases) {
      const std::string lines = "Connection: close\r\n" + (fields.empty() ? "" : fields + "\r\n");
      EXPECT_THAT(ask(std::string(request) + " HTTP/1.1\r\n" + lines + "\r\n"),
                  AllOf(StartsWith(std::string("HTTP/1.1 ") + status), HasSubstr(complaint)))
          << request << "\n"
          << fields;
    }
  }
}

TEST_F(HostileClientTest, WhatIsNoSoundRequestIsRefusedAtOnceAndInWords) {
  const std::string post = "POST /m/v1/customer HTTP/1.1\r\n";
  const std::string chunked = post + "Transfer-Encoding: chunked\r\n\r\n";
  const std::string get = "GET /m/v1/app HTTP/1.1\r\n";
  // Each but the last few could go on.
  const std::tuple<std::string, const char*, const char*> kCases[] = {
      {post + "Content-Length: -5\r\n\r\n", "400", "Content length must be one number"},
      {post + "Content-Length: 5x\r\n\r\n", "400", "Content length must be"},
      {post + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", "400", "Content length must be"},
      {post + "Content-Length: 99999999999999999999999\r\n\r\n", "413", "Body is longer than"},
      {post + "Content-Length: 1048577\r\n\r\n", "413", "Body is longer than 1048576 bytes"},
      {"PUT /sandbox/snapshot HTTP/1.1\r\nContent-Length: 16777217\r\n\r\n", "413",
       "Body is longer than 16777216 bytes"},
      {post + "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n", "400", "Body must come"},
      {post + "Transfer-Encoding: gzip\r\n\r\n", "400", "Body must come"},
      {chunked + "x\r\n", "400", "Body is not in chunks"},
      {chunked + "-1\r\n", "400", "Body is not in chunks"},
      {chunked + "1;" + text(300, "x"), "400", "Body is not in chunks"},
      {chunked + "3\r\nabcdef", "400", "Body is not in chunks"},
      {chunked + "0\r\nA: b\r\n", "400", "Body must end without trailers"},
      {chunked + "ffffffffffffffff\r\n", "413", "Body is longer than"},
      {chunked + "fffff\r\n" + text(0xfffff, "x") + "\r\n2\r\n", "413", "Body is longer than"},
      {get + "A: " + text(9000, "a") + "\r\n\r\n", "431", "Request has a head"},
      {get + text(101, "A: b\r\n") + "\r\n", "431", "Request has a head"},
      {get + text(33 << 10, "a"), "431", "Request has a head"},
      {get + "no field\r\n\r\n", "400", "no header field"},
      {get + "A b: c\r\n\r\n", "400", "no header field"},
      {get + " folded: c\r\n\r\n", "400", "no header field"},
      {"GET /" + text(2048, "a") + " HTTP/1.1\r\n\r\n", "414", "Path is too long"},
      {"GET /?" + text(8000, "a") + " HTTP/1.1\r\n\r\n", "414", "Path is too long"},
      {"GET /m/v1/orders/%FF/edit HTTP/1.1\r\n\r\n", "400", "Path must be UTF-8"},
      {"GET /m/v1/orders/%00/edit HTTP/1.1\r\n\r\n", "400", "Path must be UTF-8"},
      {"GET /m/v1/orders/a%2Fb/edit HTTP/1.1\r\n\r\n", "404", "Path is unknown"},
      {"GET /m/v1/app HTTP/3.0\r\n\r\n", "400", "Request is no HTTP"},
      {"GET  /m/v1/app HTTP/1.1\r\n\r\n", "400", "Request is no HTTP"},
      {"GET /m/v1/app?\x01 HTTP/1.1\r\n\r\n", "400", "Request is no HTTP"},
      {"GET /m/v1/app HTTP/1.1\nHost: localhost\n\n", "400", "does not end with CR and LF"},
      {get + "A: b\nHost: evil.example\r\n\r\n", "400", "does not end with CR and LF"},
      {get + "A: b\rHost: evil.example\r\n\r\n", "400", "with control characters"},
      {get + std::string("A: b\0\r\n\r\n", 9), "400", "with control characters"},
      {get + "A:\tb\tc\r\n\r\n", "200", "sandbox"},
      {"\x16\x03\x01\x02", "400", "Request is no HTTP"},
      {"BREW /m/v1/app HTTP/1.1\r\n\r\n", "400", "Request is no HTTP"},
      // Of the longest that are looked at, each byte counts for the stack.
      {"GET /" + text(2047, "a") + " HTTP/1.1\r\n\r\n", "404", "Path is unknown"},
      {get + "Range: bytes=" + text(900, "0-,") + "0-\r\n\r\n", "200", "Ovinta sandbox"},
      {get + "Authorization: Token token=\"" + text(7000, "a") + "\"\r\n\r\n", "200", "sandbox"}};
  for (const auto& [request, status, complaint] : kCases) {
    EXPECT_THAT(ask(request),
                AllOf(StartsWith(std::string("HTTP/1.1 ") + status), HasSubstr(complaint)))
        << request.substr(0, 200);
  }
  EXPECT_TRUE(serves());
}

TEST_F(HostileClientTest, BodiesThatAreNoRecordAreRefused) {
  const std::string start = R"({"data":{"name":)";
  const std::pair<std::string, const char*> kBodies[] = {
      {text(1 << 19, "["), "Body is not JSON"},
      {start + text(1 << 17, R"({"a":)"), "Body is not JSON"},
      {start + "\"\xff\"}}", "Body is not JSON"},
      {start + "12345678901234567890123}}", "Name must be"},
      {text(1 << 17, R"("\\",)"), "Body is not JSON"}};
  for (const auto& [body, complaint] : kBodies) {
    const Reply reply = app.sendBody("POST", "/m/v1/customer", body);
    EXPECT_EQ(reply.status, 422) << body.substr(0, 50);
    EXPECT_THAT(reply.body, HasSubstr(complaint)) << body.substr(0, 50);
  }
  // Nothing that was refused stays behind to spoil another answer.
  app.send("PUT", "/sandbox/faults/GET/m/v1/orders/%C3/edit", R"({"fault":"gone"})");
  EXPECT_EQ(app.send("GET", "/sandbox/faults").list(), List{});
  EXPECT_EQ(app.send("GET", "/sandbox/requests").list().size(), std::size(kBodies));
}

/// Requests that are never whole, the one or other by a few bytes only.
constexpr std::string_view kBeginnings[] = {
    "", "G", "GET /m/v1/app HTTP/1.1\r\nHost: local",
    "POST /m/v1/customer HTTP/1.1\r\nContent-Length: 9\r\n\r\n{\"data\"",
    "POST /m/v1/customer HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{"};

TEST_F(HostileClientTest, FiveHundredAtOnceAreAnsweredBesideThoseThatNeverEnd) {
  // Both ends of each connection are this process's.
  setMostFiles(4096);
  std::vector<RawClient> halfOpen;
  for (std::size_t index = 0; index < 100; ++index) {
    halfOpen.emplace_back(sandbox.port()).send(kBeginnings[index % std::size(kBeginnings)]);
  }
  std::vector<RawClient> clients;
  clients.reserve(500);
  for (int index = 0; index < 500; ++index) clients.emplace_back(sandbox.port());
  for (const RawClient& client : clients) client.send("GET /m/v1/app HTTP/1.1\r\n\r\n");
  for (const RawClient& client : clients) {
    ASSERT_THAT(client.answer(), AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("Ovinta sandbox")));
  }
  // They were there all the time, and are served as soon as their requests are whole.
  EXPECT_THAT(halfOpen[2].ask("host\r\nConnection: close\r\n\r\n"), StartsWith("HTTP/1.1 200"));
  EXPECT_THAT(halfOpen[3].ask("}}"), HasSubstr("Body is not JSON"));
  EXPECT_THAT(halfOpen[4].ask("\"a\"}\r\n0\r\n\r\n"), HasSubstr("Body is not JSON"));
}

TEST_F(HostileClientTest, ClientsThatDoNotReadKeepNobodyWaiting) {
  // More than the kernel takes for a client with such a buffer.
  const std::string body(std::size_t{7} << 19, 'x');
  app.sendBody("PUT", "/sandbox/snapshot",
               R"({"data":{"sites":[{"id":1,"name":")" + body + "\"}]}}");
  for (const std::string& fault : {R"("status","status":200,"body":")" + body + "\"",
                                   std::string(R"("wrong_content_length","length":99999999)"),
                                   std::string(R"("oversize_body","length":99999999)")}) {
    app.send("PUT", "/sandbox/faults/GET/m/v1/sites", R"({"fault":)" + fault + "}");
    std::vector<RawClient> clients;
    for (int index = 0; index < 42; ++index) {
      clients.emplace_back(sandbox.port(), 4096).send("GET /m/v1/sites HTTP/1.1\r\n\r\n");
    }
    EXPECT_TRUE(serves()) << fault.substr(0, 20);
    if (fault.ends_with("x\"")) {
      EXPECT_GT(clients.front().answer().size(), body.size());
    }
  }
}

TEST_F(HostileClientTest, AnAnswerArrivesWholeWhateverElseIsSent) {
  app.send("PUT", "/sandbox/faults/GET/m/v1/orders",
           R"({"fault":"status","status":200,"body":")" + text(1 << 20, "x") + "\"}");
  const std::string request = "GET /m/v1/orders HTTP/1.1\r\n\r\n";
  for (const std::string& more : {std::string("\r\n"), request}) {
    const RawClient client(sandbox.port(), 4096);
    client.send(request);
    ASSERT_TRUE(client.isAnswered(std::chrono::seconds(30)));
    EXPECT_THAT(client.ask(more), testing::EndsWith(text(1 << 20, "x"))) << more;
  }
}

TEST(IncomingRequestTest, KeepsOfChunksTheirContentsOnly) {
  IncomingRequest request;
  std::string contents;
  request.take("PUT /sandbox/snapshot HTTP/1.1\r\nTransfer-Encoding: chunked\r\nA: b\r\n\r\n");
  const std::string chunks = "1;" + text(250, "x") + "\r\na\r\n2\r\nbc\r\n";
  for (int index = 0; index < 1000; ++index) {
    // In pieces that end anywhere.
    const std::size_t size = 1 + static_cast<std::size_t>(index) % (chunks.size() - 1);
    request.take(std::string_view(chunks).substr(0, size));
    request.take(std::string_view(chunks).substr(size));
    contents += "abc";
    ASSERT_LT(request.text().size(), 100 + contents.size());
  }
  EXPECT_EQ(request.take("0\r\n\r\nGET"), IncomingRequest::State::whole);
  EXPECT_EQ(request.text(),
            "PUT /sandbox/snapshot HTTP/1.1\r\nA: b\r\nContent-Length: 3000\r\n\r\n" + contents);
}

TEST(HostileClientLimitTest, TheLargestGoesWhenTheyTakeTooMuchMemory) {
  Sandbox sandbox({.patience = std::chrono::hours(1), .memory = std::size_t{1} << 20});
  ASSERT_EQ(sandbox.start(), std::nullopt);
  const RawClient small(sandbox.port());
  small.send(kBeginnings[3]);
  const RawClient large(sandbox.port());
  EXPECT_THAT(large.ask("PUT /sandbox/snapshot HTTP/1.1\r\nContent-Length: 9000000\r\n\r\n" +
                        text(4 << 20, "x")),
              AllOf(StartsWith("HTTP/1.1 503"), HasSubstr("memory that others need")));
  EXPECT_THAT(small.ask("}}"), HasSubstr("Body is not JSON"));
}

TEST(HostileClientLimitTest, ThoseThatAreKeptAndThenTheOldestGoWhenThereAreTooMany) {
  Sandbox sandbox({.patience = std::chrono::hours(1)});
  const rlim_t before = setMostFiles(200);
  EXPECT_EQ(sandbox.start(), std::nullopt);
  setMostFiles(before);
  std::vector<RawClient> halfOpen;
  halfOpen.emplace_back(sandbox.port()).send("G");
  halfOpen.emplace_back(sandbox.port()).send("G");
  // One of several, as the last of them may not have been taken back yet.
  std::vector<RawClient> kept;
  while (kept.size() < 10) {
    kept.emplace_back(sandbox.port()).send("GET /m/v1/app HTTP/1.1\r\nHost: localhost\r\n\r\n");
    ASSERT_TRUE(kept.back().isAnswered(std::chrono::seconds(30)));
  }
  while (halfOpen.size() < 141) halfOpen.emplace_back(sandbox.port()).send("G");
  EXPECT_THAT(halfOpen[0].ask("ET /m/v1/app HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 200"));
  while (halfOpen.size() < 202) halfOpen.emplace_back(sandbox.port()).send("G");
  EXPECT_EQ(Speaker(sandbox).send("GET", "/m/v1/app").status, 200);
  EXPECT_THAT(halfOpen[1].answer(), testing::Not(HasSubstr("HTTP")));
}

TEST(HostileClientLimitTest, ARequestThatTakesTooLongIsToldSo) {
  Sandbox sandbox({.patience = std::chrono::milliseconds(0)});
  ASSERT_EQ(sandbox.start(), std::nullopt);
  for (const std::string_view beginning : kBeginnings) {
    const RawClient client(sandbox.port());
    EXPECT_THAT(client.ask(beginning), AllOf(StartsWith("HTTP/1.1 408"), HasSubstr("too slowly")));
  }
}

TEST(HostileClientLimitTest, ARequestThatKeepsComingTakesNoLongerForIt) {
  Sandbox sandbox({.patience = std::chrono::milliseconds(20)});
  ASSERT_EQ(sandbox.start(), std::nullopt);
  const std::string post = "POST /m/v1/customer HTTP/1.1\r\n";
  for (const std::string& beginning :
       {std::string("GET /m/v1/app HTTP/1.1\r\nA: "), post + "Content-Length: 99999\r\n\r\n",
        post + "Transfer-Encoding: chunked\r\n\r\nfffff\r\n"}) {
    const RawClient client(sandbox.port());
    client.send(beginning);
    constexpr int kMostPieces = 5000;
    int pieces = 0;
    for (; pieces < kMostPieces && !client.isAnswered(std::chrono::milliseconds(1)); ++pieces) {
      client.send("x");
    }
    EXPECT_LT(pieces, kMostPieces) << beginning;
    EXPECT_THAT(client.answer(), StartsWith("HTTP/1.1 408")) << beginning;
  }
}

}  // namespace
}  // namespace ovinta::sandbox
