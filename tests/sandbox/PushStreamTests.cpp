#include <functional>
#include <future>
#include <memory>

#include "sandbox/domain/PushMailbox.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

/// Reads a stream, calling `onText` with all that has come so far until it answers false; answers
/// all of it once the stream has ended, with a mark when the service broke it off.
std::string readStream(const Sandbox& sandbox, const std::string& path,
                       const std::function<bool(const std::string&)>& onText) {
  httplib::Client client("127.0.0.1", sandbox.port());
  client.set_read_timeout(std::chrono::seconds(10));
  std::string text;
  const httplib::Result result = client.Get(path, [&](const char* data, std::size_t length) {
    text.append(data, length);
    return onText(text);
  });
  const bool isWhole = result || result.error() == httplib::Error::Canceled;
  return isWhole ? text : text + "(broken off)";
}

std::string event(const std::string& payload) { return "event: push\ndata: " + payload + "\n\n"; }

/// The whole events in the text, the greeting aside.
long eventCount(std::string_view text) {
  long ends = 0;
  for (auto at = text.find("}\n\n"); at != text.npos; at = text.find("}\n\n", at + 1)) ++ends;
  return ends;
}

const std::string kGreeting = ": listening\n\n";

using PushStreamTest = CustomerTest;

TEST_F(PushStreamTest, SendsWhatWaitedAndThenWhatComes) {
  app.createOrder("dev:00ff");
  app.createOrder("other");
  for (const char* move : {"1001/ready", "1002/ready", "1001/ready", "1001/delayed"}) {
    app.send("POST", std::string("/sandbox/orders/") + move);
  }
  const std::string expected =
      kGreeting + event(R"({"customer_state":"created","order_id":"1001","order_state":"ready"})") +
      event(R"({"customer_state":"created","order_id":"1001","order_state":"delayed"})") +
      event(R"({"customer_state":"en_route","eta_at":"2024-05-01T12:01:30.007+0000",)"
            R"("order_id":"1001","order_state":"cancelled"})");
  bool isMoved = false;
  const auto onText = [&](const std::string& soFar) {
    if (eventCount(soFar) == 2 && !std::exchange(isMoved, true)) {
      app.send("POST", "/m/v1/events",
               R"({"order_id":1001,"event_type":"state_change","customer_state":"en_route",
                   "eta_seconds":90})");
      app.send("POST", "/sandbox/orders/1001/cancelled");
    }
    return eventCount(soFar) < 3;
  };
  EXPECT_EQ(readStream(sandbox, "/sandbox/pushes/dev%3A00ff", onText), expected);
}

TEST_F(PushStreamTest, WhatComesWhenTheListenerHasHungUpIsForTheNext) {
  app.createOrder("a");
  const auto leave = [](const std::string&) { return false; };
  EXPECT_EQ(readStream(sandbox, "/sandbox/pushes/a", leave), kGreeting);
  app.send("POST", "/sandbox/orders/1001/ready");
  const auto untilEvent = [](const std::string& soFar) { return eventCount(soFar) < 1; };
  EXPECT_THAT(readStream(sandbox, "/sandbox/pushes/a", untilEvent), testing::HasSubstr("ready"));
}

TEST_F(PushStreamTest, EndsInOrderWhenTheSandboxStops) {
  std::promise<void> listening;
  auto text = std::async(std::launch::async, [&] {
    return readStream(sandbox, "/sandbox/pushes/a", [&](const std::string& soFar) {
      if (soFar == kGreeting) listening.set_value();
      return true;
    });
  });
  listening.get_future().wait();
  sandbox.stop();
  EXPECT_EQ(text.get(), kGreeting);
  sandbox.stop();
}

/// Takes so many payloads, or all that are there, and answers them one after the other.
std::string take(PushMailbox::Listener& listener, std::size_t count = 9) {
  std::string taken;
  while (taken.size() < count) {
    const auto payload = listener.next({});
    if (!payload) break;
    listener.taken();
    taken += *payload;
  }
  return taken;
}

class PushMailboxTest : public testing::Test {
 protected:
  void send(const std::vector<const char*>& payloads) {
    for (const char* payload : payloads) mailbox.send("a", payload);
  }

  PushMailbox mailbox;
  decltype(mailbox.listen("a")) first = mailbox.listen("a");
};

TEST_F(PushMailboxTest, EachListenerOfATokenGetsEachPayload) {
  const auto second = mailbox.listen("a");
  const auto other = mailbox.listen("b");
  send({"1"});
  EXPECT_EQ(take(*first) + take(*second) + take(*other), "11");
  EXPECT_FALSE(other->isClosed());
}

TEST_F(PushMailboxTest, TheNextListenerInheritsOnlyWhatNobodyHas) {
  send({"1"});
  auto second = mailbox.listen("a");
  send({"2", "3"});
  EXPECT_EQ(take(*second, 1), "2");
  first.reset();
  EXPECT_EQ(take(*second, 1), "1");
  second.reset();
  send({"4"});
  EXPECT_EQ(take(*mailbox.listen("a")), "34");
}

}  // namespace
}  // namespace ovinta::sandbox
