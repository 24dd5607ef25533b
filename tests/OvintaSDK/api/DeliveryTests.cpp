// Every operation, with delivery on, in every kind of trouble.
#include <gmock/gmock.h>

#include <random>
#include <set>

#include "OvintaSDK/core/facade/Library.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/InMemoryOutbox.h"
#include "platform/simulation/http/SimulatedNetworkMonitor.h"
#include "tests/OvintaSDK/api/OperationCases.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;
using platform::simulation::Answer;

/// A kind of trouble, and which requests are sent again after it.
struct Trouble {
  const char* name;
  Answer answer;
  bool isForAll;
  bool isForRepeatable;
};

const Trouble kTroubles[] = {
    {"nothing was sent", Answer::noConnection(), true, true},
    {"the answer is lost", Answer::lostConnection(), false, true},
    {"too many requests", Answer::json(429, "{}").withHeader("retry-after", "5"), false, true},
    {"unavailable", Answer::json(503, "{}"), false, true},
    {"no gateway", Answer::json(502, "{}"), false, true},
    {"an error of the service", Answer::json(500, "{}"), false, false},
    {"a request that nobody can send", Answer::failure("no"), false, false}};

class DeliveredOperationTest : public SDKFixture,
                               public ::testing::WithParamInterface<OperationCase> {
 protected:
  DeliveredOperationTest() {
    restartWith([this](platform::Services& services) {
      services.settings->set("Customer Token", test::customer().token);
      platform::portable::addDelivery(
          services, {},
          {.outbox = std::make_shared<platform::simulation::InMemoryOutbox>(),
           .network =
               std::make_shared<platform::simulation::SimulatedNetworkMonitor>(time.mainQueue()),
           .uptime = [clock = time.clock()] { return clock->now().time_since_epoch(); },
           .random = std::mt19937_64(1),
           .onCallbackThread = [queue = time.mainQueue()](auto task) { queue->async(task); }});
      delivery = services.delivery;
    });
  }

  /// Whether the operation's request may be sent twice without harm.
  static bool isRepeatable(const platform::URLRequest& request) {
    return request.method == "GET" || request.method == "PUT" ||
           request.url.text.ends_with("/events");
  }

  std::shared_ptr<platform::Delivery> delivery;
};

TEST_P(DeliveredOperationTest, IsSentAgainWhereThatIsOfUseAndDoesNoHarm) {
  for (const Trouble& trouble : kTroubles) {
    SCOPED_TRACE(trouble.name);
    const std::size_t before = requests().size();
    std::string told;
    answerAll(trouble.answer);
    GetParam()
        .make(std::string(kBaseURL),
              [&told](bool hasResult, const ErrorPtr&) { told += hasResult ? "result" : "error"; })
        ->main();
    drain();
    ASSERT_EQ(requests().size(), before + 1);
    const bool isSentAgain =
        isRepeatable(requests().back()) ? trouble.isForRepeatable : trouble.isForAll;
    EXPECT_EQ(told, isSentAgain ? "" : "error");
    answerAll(Answer::json(GetParam().success, GetParam().answer));
    advance(30s);
    EXPECT_EQ(told, isSentAgain ? "result" : "error");
    EXPECT_EQ(requests().size(), before + (isSentAgain ? 2 : 1));
    std::set<std::optional<std::string>> keys;
    for (std::size_t i = before; i < requests().size(); ++i) {
      keys.insert(platform::HTTPResponse{200, requests()[i].headers}.header("Idempotency-Key"));
    }
    EXPECT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys.begin()->has_value(), requests().back().url.text.ends_with("/events"));
  }
  EXPECT_TRUE(delivery->account().isBalanced());
  EXPECT_EQ(delivery->account().waiting, 0U);
}

INSTANTIATE_TEST_SUITE_P(Endpoints, DeliveredOperationTest, ::testing::ValuesIn(operationCases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace ovinta::test
