// The session's thread: connections, many requests at once, its end and the process's.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <latch>
#include <semaphore>

#include "tests/platform/linux/CurlURLSessionFixture.h"
#include "tests/support/LocalServer.h"

namespace ovinta::platform::linuxos {
namespace {

using test::httpAnswer;
using test::LocalServer;
using test::ReceivedRequest;
using test::ServerConnection;

class CurlURLSessionThread : public CurlURLSessionFixture {};

TEST_F(CurlURLSessionThread, UsesAConnectionAgain) {
  LocalServer server(LocalServer::answering(
      [](const auto& request) { return httpAnswer("200 OK", request.body); }));
  for (const std::string& body : {std::string("1"), std::string("\0\r\xff", 3), std::string()}) {
    EXPECT_EQ(fetch({.url = {server.url()}, .method = "POST", .body = body}).data, body);
  }
  EXPECT_EQ(server.connectionCount(), 1u);
}

TEST_F(CurlURLSessionThread, SurvivesAConnectionClosedWhileIdle) {
  LocalServer server([](ServerConnection& connection) {
    connection.readRequest();
    connection.send(httpAnswer("200 OK", "once"));
  });
  for (int i = 0; i < 3; ++i) EXPECT_EQ(get(server.url()).data, "once");
}

TEST_F(CurlURLSessionThread, WaitsNoLongerThanItMay) {
  std::counting_semaphore<> asked(0);
  restart({.beforeWaiting = [&] {
    asked.release();
    return std::chrono::milliseconds(1);
  }});
  EXPECT_NE(get("none:").sentence(), "");
  // Before the first wait, and after it, though nothing was to be done.
  for (int wait = 0; wait < 2; ++wait) asked.acquire();
  session_.reset();
}

TEST_F(CurlURLSessionThread, CarriesManyRequestsAtOnceAndKeepsAFewConnectionsAfter) {
  constexpr int kRequests = 40;
  constexpr int kFew = 8;
  std::barrier all(kRequests);
  std::atomic<int> open = 0;
  const auto answer = LocalServer::answering([&](const ReceivedRequest& request) {
    if (request.target != "/") all.arrive_and_wait();
    return httpAnswer("200 OK", request.target);
  });
  LocalServer server([&](ServerConnection& connection) {
    ++open;
    answer(connection);
    --open;
  });
  for (int burst = 0; burst < 2; ++burst) {
    std::vector<std::future<Outcome>> started;
    for (int i = 0; i < kRequests; ++i) {
      started.push_back(start({.url = {server.url("/" + std::to_string(i))}}));
    }
    for (int i = 0; i < kRequests; ++i) EXPECT_EQ(started[i].get().data, "/" + std::to_string(i));
  }
  EXPECT_EQ(server.connectionCount(), kRequests);
  for (int i = 0; i < 100 * kRequests && open > kFew; ++i) {
    EXPECT_EQ(get(server.url()).data, "/");
  }
  EXPECT_EQ(open, kFew);
  EXPECT_EQ(server.connectionCount(), kRequests);
}

TEST_F(CurlURLSessionThread, DropsWhatIsUnderWayAtItsEnd) {
  constexpr int kRequests = 8;
  std::latch seen(kRequests);
  LocalServer server(LocalServer::answering([&](const auto&) {
    seen.count_down();
    return "";
  }));
  const auto calls = std::make_shared<std::atomic<int>>(0);
  for (int i = 0; i < kRequests; ++i) {
    session_->startDataTask({.url = {server.url()}}, [calls](auto, auto, auto) { ++*calls; });
  }
  seen.wait();
  session_.reset();
  EXPECT_EQ(*calls, 0);
  EXPECT_EQ(calls.use_count(), 1) << "completions are kept";

  CurlURLSession unused;
}

/// Processes that end with requests under way.
class ExitingProcess : public testing::Test {
 protected:
  ExitingProcess() {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // Added before the session's own exit handler, and so called after it.
    std::atexit([] { threadsAreStopped_ = true; });
    session_ = std::make_unique<CurlURLSession>();
  }

  void startUnanswered() {
    for (const char* scheme : {"http", "https", "https", "http"}) {
      session_->startDataTask({.url = {scheme + silent_.url().substr(4)}},
                              [](auto, auto, auto) { _exit(2); });
    }
  }
  void startRefused(std::function<void()> then) {
    session_->startDataTask({.url = {"none:"}}, [then](auto, auto, auto) { then(); });
  }
  void completeForEver() {
    if (threadsAreStopped_) _exit(3);
    startRefused([this] { completeForEver(); });
  }

  static inline std::atomic<bool> threadsAreStopped_ = false;
  LocalServer silent_{[](ServerConnection& connection) { connection.waitForClose(); }};
  std::unique_ptr<CurlURLSession> session_;
};

// What the library's own ends of a process do not meet.
TEST_F(ExitingProcess, EndsCleanly) {
  const auto duringLongCompletion = [&] {
    std::promise<void> begun;
    startRefused([&begun] {
      begun.set_value();
      std::promise<void>().get_future().wait();
    });
    begun.get_future().wait();
  };
  const auto end = [&](const std::function<void()>& proceed) {
    startUnanswered();
    proceed();
    std::exit(0);
  };
  for (int i = 0; i < 24; ++i) {
    EXPECT_EXIT(end([this] { completeForEver(); }), testing::ExitedWithCode(0), "") << i;
  }
  EXPECT_EXIT(end(duringLongCompletion), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ovinta::platform::linuxos
