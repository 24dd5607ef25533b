#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/portable/Portable.h"
#include "platform/simulation/http/HoldingURLSession.h"
#include "platform/simulation/time/TimeHoldingOperationQueueFactory.h"
#include "platform/simulation/time/TimeHoldingURLSession.h"
#include "tests/support/FunctionOperation.h"
#include "tests/support/PromptURLSession.h"

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

URLRequest request(std::string text) { return {.url = {std::move(text)}}; }

TEST(HoldingURLSessionTest, AnswersEachRequestOnceInAnyOrder) {
  int calls = 0;
  HoldingURLSession session;
  for (const char* url : {"a", "b"}) {
    session.startDataTask(request(url), [&](auto, auto, auto) { ++calls; });
  }
  EXPECT_TRUE(session.answer(1, Answer::json(410, "")));
  EXPECT_FALSE(session.answer(1, Answer::json(200, "")));
  EXPECT_FALSE(session.answer(2, Answer::json(200, "")));
  EXPECT_EQ(session.waitingCount(), 1u);
  EXPECT_TRUE(session.answer(0, Answer::failure("reset")));
  EXPECT_EQ(calls, 2);
}

// Operations and completions on threads of their own: every run gives the same sequence. `log` has
// no lock, since all that writes to it takes turns.
TEST(TimeHoldingTest, TheSameWorkComesInTheSameOrderEveryTime) {
  std::vector<std::string> expected;
  for (int round = 0; round < 20; ++round) {
    VirtualTime time{Date{}};
    const auto queue = time.mainQueue();
    std::vector<std::string> log;
    TimeHoldingURLSession session(
        std::make_shared<test::PromptURLSession>([](const auto&) { return Answer::json(200, ""); }),
        time);
    TimeHoldingOperationQueueFactory factory(portable::makeOperationQueueFactory(), time);
    const auto operations = factory.makeQueue();
    EXPECT_EQ(operations->maxConcurrentOperationCount(), 0u);

    const auto send = [&](const std::string& name, const std::function<void()>& then) {
      operations->addOperation(test::operation([&, name, then] {
        log.push_back("send " + name);
        session.startDataTask(request(name), [&, name, then](auto, auto, auto) {
          log.push_back("end " + name);
          if (then) then();
        });
      }));
    };
    queue->asyncAfter(5s, [&] { log.push_back("5 s"); });
    for (int i = 0; i < 3; ++i) {
      const auto name = std::to_string(i);
      send(name, [&, name] {
        queue->async([&, name] { send(name + "m", {}); });
        send(name + "c", {});
      });
    }
    EXPECT_THAT(log, IsEmpty());
    time.advance(5s);
    EXPECT_EQ(log.size(), 19u);
    EXPECT_EQ(log.back(), "5 s");
    std::erase_if(log, [](const std::string& entry) { return entry.starts_with("end"); });
    if (round == 0) expected = log;
    EXPECT_EQ(log, expected);
  }
}

}  // namespace
}  // namespace ovinta::platform::simulation
