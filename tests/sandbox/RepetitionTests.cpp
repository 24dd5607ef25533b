#include <future>
#include <memory>
#include <stdexcept>

#include "sandbox/routes/KeptAnswers.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

class RepetitionTest : public CustomerTest {
 protected:
  Reply sendWithKey(const std::string& key, const std::string& path, const std::string& data) {
    app.headers.emplace("Idempotency-Key", key);
    Reply reply = app.send("POST", path, data);
    app.headers.erase("Idempotency-Key");
    return reply;
  }
  Reply report(const std::string& key, const std::string& state, const std::string& order) {
    return sendWithKey(key, "/m/v1/events",
                       R"({"order_id":)" + order +
                           R"(,"event_type":"state_change","customer_state":")" + state + "\"}");
  }
  std::string newOrder() {
    return std::to_string(*platform::find<std::int64_t>(app.createOrder().record(), "id"));
  }
};

TEST_F(RepetitionTest, IsAnsweredAsTheFirstWithoutBeingCarriedOut) {
  const std::string order = newOrder();
  app.send("PUT", "/sandbox/faults/POST/m/v1/events", R"({"fault":"answer_lost","count":1})");
  app.send("DELETE", "/sandbox/requests");
  EXPECT_EQ(report("\"one\"", "arrived", order).status, 0);
  advance(std::chrono::seconds(60));
  EXPECT_EQ(report("\"two\"", "waiting", order).text("customer_state"), "waiting");
  const std::string before = app.send("GET", "/sandbox/snapshot").body;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(report("\"one\"", "arrived", order).text("customer_state"), "arrived");
  }
  EXPECT_EQ(app.send("GET", "/sandbox/snapshot").body, before);

  std::string statuses;
  const Reply log = app.send("GET", "/sandbox/requests");
  for (const Value& entry : log.list()) {
    const auto& request = *entry.as<Dictionary>();
    const bool isRepetition = platform::find<bool>(request, "repetition") != nullptr;
    statuses += std::to_string(*platform::find<std::int64_t>(request, "status")) +
                (isRepetition ? "r " : " ");
  }
  EXPECT_EQ(statuses, "0 200 200r 200r ");
}

TEST_F(RepetitionTest, IsWhatHasTheSameKeyAndContentOfTheSameCustomer) {
  const std::string order = newOrder();
  EXPECT_EQ(report("k", "arrived", order).status, 200);
  const Reply other = report("k", "waiting", order);
  EXPECT_EQ(other.status, 422);
  EXPECT_EQ(platform::writeJSON(other.errors),
            R"({"idempotency_key":["Idempotency key was used for another request"]})");
  const std::string data = R"({"site_id":42,"partner_identifier":"A-2"})";
  EXPECT_EQ(sendWithKey("k", "/m/v1/orders", data).status, 422);
  const std::string created = sendWithKey("k2", "/m/v1/orders", data).body;
  EXPECT_EQ(sendWithKey("k2", "/m/v1/orders", data).body, created);
  EXPECT_NE(sendWithKey("", "/m/v1/orders", data).body, created);
  // What is refused stays so, even where it could be carried out by the time it is repeated.
  EXPECT_EQ(report("k3", "arrived", "9999").status, 404);
  EXPECT_EQ(report("k3", "arrived", "9999").status, 404);

  const std::string mine = app.headers.find("Authorization")->second;
  app.becomeCustomer();
  EXPECT_NE(sendWithKey("k2", "/m/v1/orders", data).body, created);
  app.send("PUT", "/sandbox/snapshot",
           platform::writeJSON(app.send("GET", "/sandbox/snapshot").record()));
  app.headers.find("Authorization")->second = mine;
  EXPECT_NE(sendWithKey("k2", "/m/v1/orders", data).body, created) << "snapshots hold no keys";
}

TEST(KeptAnswersTest, TakeNoMoreRoomThanTheyMayAndForgetTheOldest) {
  KeptAnswers kept(4000);
  int count = 0;
  const auto ask = [&](const std::string& key) {
    return kept.answerOnce({key, "content"}, [&] {
      const std::string text = std::to_string(++count) + std::string(200, ' ');
      return Answer{.body = text, .headers = {{"Text", text}}};
    });
  };
  for (const char* key : {"a", "b", "c", "a", "b", "c", "d"}) ask(key);
  EXPECT_EQ(count, 4);
  EXPECT_TRUE(ask("b").isRepetition);
  EXPECT_FALSE(ask("a").isRepetition);
  kept.clear();
  EXPECT_FALSE(ask("a").isRepetition);
}

TEST(KeptAnswersTest, AreWaitedForAndAFailureIsNone) {
  KeptAnswers kept;
  std::promise<void> begun;
  std::promise<void> go;
  auto first = std::async(std::launch::async, [&] {
    return kept.answerOnce({"k", "c"}, [&] {
      begun.set_value();
      go.get_future().wait();
      return Answer{.body = "once"};
    });
  });
  begun.get_future().wait();
  auto second = std::async(std::launch::async, [&] {
    return kept.answerOnce({"k", "c"}, [] { return Answer{.body = "twice"}; });
  });
  EXPECT_EQ(kept.answerOnce({"k", "d"}, [] { return Answer(); }).status, 422);
  go.set_value();
  EXPECT_EQ(first.get().body, "once");
  EXPECT_EQ(second.get().body, "once");

  const auto fail = []() -> Answer { throw std::runtime_error("no"); };
  EXPECT_THROW(kept.answerOnce({"f", ""}, fail), std::runtime_error);
  EXPECT_EQ(kept.answerOnce({"f", ""}, [] { return Answer{.body = "after"}; }).body, "after");
}

}  // namespace
}  // namespace ovinta::sandbox
