// How long a request may take, and how much may come of it.
#include <gtest/gtest.h>

#include <future>

#include "platform/linux/Linux.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/platform/linux/CurlURLSessionFixture.h"
#include "tests/support/LocalServer.h"

namespace ovinta::platform::linuxos {
namespace {

using test::httpAnswer;
using test::LocalServer;
using test::ServerConnection;
using namespace std::chrono_literals;

const std::string kHead = "HTTP/1.1 200 OK\r\n";
const std::string kChunked = kHead + "Transfer-Encoding: chunked\r\n\r\n";
const std::string kCircle = httpAnswer("302 Found", "moved", "Location: /\r\n");
const std::string kTimedOut = "The request timed out.";
const std::string kTooLarge = "The answer of the server is too large.";

std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

class CurlURLSessionLimit : public CurlURLSessionFixture {
 protected:
  /// Lets a while pass before each part, and the session see each before the next.
  void drip(ServerConnection& connection, std::chrono::seconds interval,
            const std::vector<std::string>& parts) {
    for (const auto& part : parts) {
      pass(interval);
      connection.send(part);
      pass(0s);
    }
  }
};

TEST_F(CurlURLSessionLimit, TimesOutWhereTheServerStops) {
  const std::tuple<std::string, std::string, int> cases[] = {
      {"https", "", 0},
      {"http", "", 0},
      {"http", kHead + "A: b\r\nC", 0},
      {"http", kHead + "Content-Length: 9\r\n\r\n123", 200}};
  for (const auto& [scheme, bytes, statusCode] : cases) {
    SCOPED_TRACE(scheme + bytes);
    restartStepped();
    std::promise<void> stopped;
    LocalServer server([&, sent = bytes](ServerConnection& connection) {
      connection.readBytes(1);
      connection.send(sent);
      stopped.set_value();
      connection.waitForClose();
    });
    auto request = start({.url = {scheme + server.url().substr(4)}, .timeout = 30s});
    stopped.get_future().wait();
    pass(29'999ms);
    EXPECT_FALSE(hasEnded(request));
    // What came may have been seen only just before the first of them.
    for (int i = 0; i < 2 && !hasEnded(request); ++i) pass(30s);
    ASSERT_TRUE(hasEnded(request));
    const auto outcome = request.get();
    EXPECT_EQ(outcome.sentence(), kTimedOut);
    EXPECT_EQ(outcome.statusCode(), statusCode);
    EXPECT_EQ(outcome.data, std::nullopt);
  }
}

TEST_F(CurlURLSessionLimit, AnswersThatComeInPutTheTimeoutOff) {
  restartStepped();
  LocalServer server([&](ServerConnection& connection) {
    connection.readRequest();
    drip(connection, 6s,
         {"HTTP/1.1 200 OK\r\n", "A: b\r\n", "Content-Length: 4\r\n", "\r\n", "d", "a", "t", "a"});
  });
  EXPECT_EQ(fetch({.url = {server.url()}, .timeout = 10s}).data, "data");
}

TEST_F(CurlURLSessionLimit, RequestsThatGoOutPutTheTimeoutOff) {
  // More than what is on its way between the two, so that some more of it goes out at each step.
  constexpr std::size_t kStep = 8'000'000;
  restartStepped();
  LocalServer server(
      [&](ServerConnection& connection) {
        for (int i = 0; i < 4; ++i) {
          clock_->advance(6s);
          if (!connection.readBytes(kStep)) return;
        }
        connection.send(httpAnswer("200 OK", "stored"));
        connection.waitForClose();
      },
      64 << 10);
  const auto outcome = fetch({.url = {server.url()},
                              .method = "POST",
                              .body = std::string(4 * kStep, 'x'),
                              .timeout = 10s});
  EXPECT_EQ(outcome.data, "stored") << outcome.sentence();
}

TEST_F(CurlURLSessionLimit, NothingPutsTheEndOff) {
  const std::pair<std::string, std::string> cases[] = {{kHead + "\r\n", "x"},
                                                       {kHead, "A: b\r\n"},
                                                       {"", "HTTP/1.1 100 Continue\r\n\r\n"},
                                                       {kChunked + "1", ";more"},
                                                       {kChunked + "0\r\n", "A: b\r\n"}};
  for (const auto& [first, part] : cases) {
    SCOPED_TRACE(first + part);
    restartStepped();
    LocalServer server([&, before = first, more = part](ServerConnection& connection) {
      connection.readRequest();
      connection.send(before);
      drip(connection, 9s, std::vector(8, more));
    });
    const auto outcome = fetch({.url = {server.url()}, .timeout = 10s});
    EXPECT_EQ(outcome.sentence(), kTimedOut);
    EXPECT_GE(clock_->elapsed(), 60s);
    EXPECT_EQ(outcome.data, std::nullopt);
  }
}

TEST_F(CurlURLSessionLimit, HoldsForARequestWithItsRedirects) {
  restartStepped();
  LocalServer slow(LocalServer::answering([&](const auto&) {
    clock_->advance(9s);
    return kCircle;
  }));
  EXPECT_EQ(get(slow.url()).sentence(), kTimedOut);

  restart({.sizeLimit = 10 * kCircle.size()});
  LocalServer quick(LocalServer::answering([](const auto&) { return kCircle; }));
  EXPECT_EQ(get(quick.url()).sentence(), kTooLarge);
}

TEST_F(CurlURLSessionLimit, EndsAnswersOnceTheyAreTooLarge) {
  const std::string inflatesTo4000 = std::string(
      "\x78\xda\xed\xc1\x31\x01\x00\x00\x00\xc2\xa0\xda\x8b\x6f\x0c\x1f\xa0\x00\x00"
      "\x00\x80\xb7\x01\x83\xd1\x53\x6a",
      27);
  const std::tuple<const char*, std::string, int> cases[] = {
      {"body", kHead + "\r\n" + std::string(1000, 'x'), 200},
      {"announced body", kHead + "Content-Length: 1001\r\n\r\n", 0},
      {"chunks", kChunked + repeated("1\r\nx\r\n", 200), 200},
      {"a chunk's extension", kChunked + "1;" + std::string(1000, 'x'), 200},
      {"trailer", kChunked + "0\r\n" + repeated("A: b\r\n", 200), 200},
      {"head", kHead + repeated("A: b\r\n", 200), 0},
      {"interim heads", repeated("HTTP/1.1 100 Continue\r\n\r\n", 50), 0},
      {"what it inflates to",
       kHead + "Transfer-Encoding: deflate\r\nContent-Length: 27\r\n\r\n" + inflatesTo4000, 200}};
  for (const auto& [name, bytes, statusCode] : cases) {
    SCOPED_TRACE(name);
    restart({.sizeLimit = 1000});
    LocalServer server([sent = bytes](ServerConnection& connection) {
      connection.readRequest();
      connection.send(sent);
      connection.waitForClose();
    });
    const auto outcome = get(server.url());
    EXPECT_EQ(outcome.sentence(), kTooLarge);
    EXPECT_EQ(outcome.statusCode(), statusCode);
    EXPECT_EQ(outcome.data, std::nullopt);
  }
}

TEST_F(CurlURLSessionLimit, CountsEveryByteUpToTheLast) {
  const std::string answer = httpAnswer("200 OK", "body");
  LocalServer server(LocalServer::answering([&](const auto&) { return answer; }));
  restart({.sizeLimit = answer.size()});
  EXPECT_EQ(get(server.url()).data, "body");
  EXPECT_EQ(get(server.url()).data, "body") << "each request has its own count";
  restart({.sizeLimit = answer.size() - 1});
  EXPECT_EQ(get(server.url()).sentence(), kTooLarge);
  restart({.sizeLimit = static_cast<std::size_t>(-1)});
  EXPECT_EQ(get(server.url()).data, "body");

  constexpr std::size_t kLimitUnlessSet = 4 << 20;
  for (const std::size_t surplus : {0, 1}) {
    LocalServer large(LocalServer::answering([&](const auto&) {
      const std::string head = kHead + "Content-Length: ";
      const std::size_t size = kLimitUnlessSet - head.size() - 11 + surplus;
      return head + std::to_string(size) + "\r\n\r\n" + std::string(size, 'x');
    }));
    restart({});
    EXPECT_EQ(get(large.url()).sentence(), surplus == 0 ? "" : kTooLarge);
  }

  LocalServer lengthOnly(LocalServer::answering(
      [](const auto&) { return kHead + "Content-Length: 99999999999\r\n\r\n"; }));
  EXPECT_EQ(fetch({.url = {lengthOnly.url()}, .method = "HEAD"}).data, "") << "nothing comes";
}

TEST_F(CurlURLSessionLimit, SetsNoMemoryAsideForAllThatIsAnnounced) {
  LocalServer server([](ServerConnection& connection) {
    connection.readRequest();
    connection.send(kHead + "Content-Length: 9000000000000000000\r\n\r\nx");
  });
  restart({.sizeLimit = static_cast<std::size_t>(-1)});
  EXPECT_EQ(get(server.url()).sentence(), "The network connection was lost.");
}

TEST_F(CurlURLSessionLimit, ReadsNothingBeyond) {
  std::promise<bool> sentAll;
  LocalServer server([&](ServerConnection& connection) {
    connection.readRequest();
    const std::string part(1 << 20, 'x');
    bool sent = connection.send(kHead + "\r\n");
    for (int i = 0; i < 64 && sent; ++i) sent = connection.send(part);
    sentAll.set_value(sent);
    connection.waitForClose();
  });
  EXPECT_EQ(get(server.url()).sentence(), kTooLarge);
  EXPECT_FALSE(sentAll.get_future().get());

  // Fields take many times their size: a head ends long before the rest.
  LocalServer headOnly([](ServerConnection& connection) {
    connection.readRequest();
    connection.send(kHead + repeated("a:\r\n", 20'000));
    connection.waitForClose();
  });
  EXPECT_EQ(get(headOnly.url()).sentence(), kTooLarge);
}

TEST_F(CurlURLSessionLimit, IsTheApplicationsToChoose) {
  using Milliseconds = std::optional<std::chrono::milliseconds>;
  LocalServer server(LocalServer::answering([](const test::ReceivedRequest& request) {
    return request.target == "/silent" ? "" : httpAnswer("200 OK", std::string(1000, 'x'));
  }));
  const std::tuple<Milliseconds, std::optional<std::size_t>, const char*, std::string> cases[] = {
      {{}, {}, "/", ""},
      {1ms, {}, "/silent", kTimedOut},
      {{}, 1000, "/", kTooLarge},
      {0ms, 0, "/",
       "The time limit of requests is no time: 0 ms\nThe size limit of answers is 0.\n"}};
  for (const auto& [timeLimit, sizeLimit, path, expected] : cases) {
    const auto log = std::make_shared<simulation::RecordingLog>();
    const auto services =
        makeServices({.log = log, .requestTimeLimit = timeLimit, .answerSizeLimit = sizeLimit});
    std::promise<std::string> said;
    services.urlSession->startDataTask(
        {.url = {server.url(path)}}, [&](const auto&, const auto&, const auto& error) {
          std::string text = error ? error->localizedDescription : "";
          for (const auto& line : log->lines()) text += line + "\n";
          said.set_value(text);
        });
    EXPECT_EQ(said.get_future().get(), expected);
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
