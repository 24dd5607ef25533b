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

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

URLRequest request(std::string text) { return {.url = {std::move(text)}}; }

/// Notes how a request ended.
URLSession::Completion into(std::vector<std::string>& log) {
  return [&log](const auto& data, const auto& response, const auto& error) {
    log.push_back(error ? error->localizedDescription
                        : std::to_string(response->statusCode) + data.value_or("-"));
  };
}

TEST(HoldingURLSessionTest, AnswersEachRequestOnceInAnyOrder) {
  std::vector<std::string> log;
  HoldingURLSession session;
  session.startDataTask(request("a"), into(log));
  session.startDataTask(request("b"), into(log));
  EXPECT_TRUE(session.answer(1, Answer::json(410, "").withHeader("X", "y")));
  EXPECT_FALSE(session.answer(1, Answer::json(200, "")));
  EXPECT_FALSE(session.answer(2, Answer::json(200, "")));
  EXPECT_EQ(session.waitingCount(), 1u);
  EXPECT_TRUE(session.answer(0, Answer::failure("reset")));
  EXPECT_THAT(log, ElementsAre("410", "reset"));
}

/// Answers every request on a thread of its own.
class ThreadedURLSession : public URLSession {
 public:
  ThreadedURLSession() { answers_->setMaxConcurrentOperationCount(1); }
  void startDataTask(URLRequest, Completion completion) override {
    answers_->addOperation(test::operation([completion = std::move(completion)] {
      completion("", HTTPResponse{200, {}}, {});
    }));
  }

 private:
  std::shared_ptr<OperationQueue> answers_ = portable::makeOperationQueueFactory()->makeQueue();
};

// Operations and completions on threads of their own: every run gives the same sequence. `log` has
// no lock, since all that writes to it takes turns.
TEST(TimeHoldingTest, TheSameWorkComesInTheSameOrderEveryTime) {
  std::vector<std::string> expected;
  for (int round = 0; round < 20; ++round) {
    VirtualTime time{Date{}};
    const auto queue = time.mainQueue();
    std::vector<std::string> log;
    TimeHoldingURLSession session(std::make_shared<ThreadedURLSession>(), time);
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
