// Every endpoint's operation under every fault that the sandbox can play.
#include <gmock/gmock.h>

#include <map>
#include <typeinfo>

#include "OvintaSDK/api/OvintaAPIError.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/InMemoryOutbox.h"
#include "platform/simulation/http/SimulatedNetworkMonitor.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/OvintaSDK/service/ServiceFixture.h"

namespace ovinta::test {
namespace {

/// What the callback receives.
struct Expected {
  /// Null for a result.
  const std::type_info* type = nullptr;
  std::string_view description = {};
  std::optional<HTTPStatusCode> status = {};
};

constexpr std::nullopt_t kSilence = std::nullopt;
using Exceptions = std::map<std::string, std::optional<Expected>>;

const char* const kLost = "The network connection was lost.";
const char* const kTimedOut = "The request timed out.";

struct FaultCase {
  std::string fault;
  Expected expected;
  /// What other operations than most meet instead.
  Exceptions exceptions = {};
  /// How often the service is asked.
  std::size_t requests = 1;
  /// Whether the operation ends by the time that passes.
  bool isWaitedOut = false;

  /// Whether delivery overcomes the fault where the request may be sent twice.
  bool isOvercome() const {
    const bool isLost = expected.description == kLost || expected.description == kTimedOut;
    return isLost || fault.find("503") != fault.npos;
  }
};

Expected result() { return {}; }
Expected transport(const char* sentence) { return {&typeid(OvintaError), sentence}; }
Expected unreadable() { return {&typeid(OvintaErrorInvalidResponse), Message::unreadable}; }
Expected refusal(std::string_view message, std::optional<HTTPStatusCode> status = {}) {
  return {&typeid(OvintaAPIError), message, status};
}

const char* const kInCircles = "The server redirected the request too many times.";
const char* const kUpgrade = "Please update to the latest version of the app";

/// Those that take no notice of the answer's body, and with the one that takes any types.
const Exceptions kReadNoBody{{"CreateOrderEvent", result()}, {"RequestPasswordReset", result()}};
const Exceptions kReadNoBodyOrAny{
    {"CreateOrderEvent", result()}, {"RequestPasswordReset", result()}, {"GetAppInfo", result()}};

std::vector<FaultCase> faultCases() {
  using enum HTTPStatusCode;
  return {
      {R"("status","status":500,"body":"no","content_type":"text/plain")",
       refusal(Message::unknown)},
      {R"("status","status":503,"body":"{\"errors\":{\"a\":[\"b\",\"c\"],\"d\":[\"e\"]}}")",
       refusal("b, c, e")},
      {R"("status","status":202)",
       refusal(Message::unknown, accepted),
       {{"RequestPasswordReset", result()}}},
      {R"("status","status":200)",
       unreadable(),
       {{"CreateOrderEvent", result()}, {"RequestPasswordReset", refusal(Message::unknown, ok)}}},
      {R"("status","status":204)", refusal(Message::unknown, noContent)},
      {R"("status","status":401)", refusal(Message::notAuthorized, unauthorized)},
      {R"("status","status":404)", refusal(Message::notFound, notFound)},
      {R"("status","status":422,"body":"{}")",
       refusal(Message::unprocessable, unprocessableEntity)},
      {R"("empty_body")", unreadable(), kReadNoBody},
      {R"("cut_short")", transport(kLost)},
      {R"("malformed_json")", unreadable(), kReadNoBody},
      {R"("wrong_types")", unreadable(), kReadNoBodyOrAny},
      {R"("wrong_content_length","length":5)", unreadable(), kReadNoBody},
      {R"("wrong_content_length","length":99999)", transport(kLost)},
      {R"("delay","seconds":0.01)", result()},
      {R"("delay","count":1,"seconds":3600)", transport(kTimedOut), {}, 1, true},
      {R"("never_answers","count":1)", transport(kTimedOut), {}, 1, true},
      {R"("reset")", transport(kLost)},
      {R"("answer_lost")", transport(kLost)},
      {R"("reset_in_body")", transport(kLost)},
      {R"("redirect_same_origin","count":1)", result(), {}, 2},
      {R"("redirect_same_origin")", transport(kInCircles), {}, 11},
      {R"("redirect_other_origin")", refusal(Message::unknown)},
      {R"("oversize_body")", transport("The answer of the server is too large.")},
      {R"("upgrade_required")", refusal(kUpgrade, appUpgradeRequired)},
      {R"("gone")", refusal(Message::unknown, gone), {{"CreateOrderEvent", kSilence}}},
  };
}

class NetworkFaultTest : public ServiceFixture,
                         public ::testing::WithParamInterface<OperationCase> {
 protected:
  /// Waits until a fault that was to strike once has done so.
  void waitForFault() {
    while (!speaker->send("GET", "/sandbox/faults").list().empty()) {
    }
  }

  /// What the operation asks, as "METHOD/path".
  std::string endpointOf(const OperationCase& operation) {
    run(operation);
    const auto& exchange = *session->exchanges().back().as<platform::Dictionary>();
    const auto& request = *platform::find<platform::Dictionary>(exchange, "request");
    const std::string target = *platform::find<std::string>(request, "target");
    return *platform::find<std::string>(request, "method") + target.substr(0, target.find('?'));
  }

  void expectReport(const std::vector<Report>& reports, const std::optional<Expected>& expected,
                    std::string_view title) {
    ASSERT_EQ(reports.size(), expected.has_value() ? 1U : 0U);
    if (!expected) return;
    const Report& report = reports.front();
    EXPECT_EQ(report.hasResult, expected->type == nullptr);
    ASSERT_EQ(report.error == nullptr, expected->type == nullptr);
    if (!report.error) return;
    const OvintaError& error = *report.error;
    EXPECT_EQ(typeid(error), *expected->type);
    EXPECT_EQ(error.errorDescription(), expected->description);
    EXPECT_EQ(error.title(), title);
    const auto* refusal = dynamic_cast<const OvintaAPIError*>(&error);
    if (!refusal) return;
    EXPECT_EQ(refusal->statusCode(), expected->status);
    EXPECT_EQ(refusal->appUpgradeURL().has_value(),
              expected->status == HTTPStatusCode::appUpgradeRequired);
  }
};

TEST_P(NetworkFaultTest, GivesTheStatedErrorOrSilence) {
  const std::string endpoint = "/sandbox/faults/" + endpointOf(soundCase(GetParam().name));
  for (const FaultCase& test : faultCases()) {
    SCOPED_TRACE(test.fault);
    const OperationCase operation = soundCase(GetParam().name);
    ASSERT_EQ(speaker->send("PUT", endpoint, R"({"fault":)" + test.fault + "}").status, 200);
    requests.clear();
    const auto reports = start(operation, service.baseURL());
    if (test.isWaitedOut) {
      waitForFault();
      ASSERT_TRUE(session->waitOut());
    } else {
      session->wait();
    }
    const auto exception = test.exceptions.find(operation.name);
    expectReport(*reports, exception == test.exceptions.end() ? test.expected : exception->second,
                 operation.title);
    // The service can be behind an app that has given up.
    EXPECT_EQ(requests.waitFor(test.requests), test.requests);
    speaker->send("DELETE", "/sandbox/faults");
  }
}

/// The same with delivery on, which tries again at once.
class DeliveredFaultTest : public NetworkFaultTest {
 protected:
  DeliveredFaultTest() {
    restartWith([this](platform::Services& services) {
      services.urlSession = session;
      platform::portable::addDelivery(
          services, {},
          {.outbox = std::make_shared<platform::simulation::InMemoryOutbox>(),
           .network =
               std::make_shared<platform::simulation::SimulatedNetworkMonitor>(time.mainQueue()),
           .uptime = [clock = time.clock()] { return clock->now().time_since_epoch(); },
           .random = [number = std::uint64_t{0}]() mutable { return ++number; },
           .onCallbackThread = [queue = time.mainQueue()](auto task) { queue->async(task); }});
      delivery = services.delivery;
    });
  }
  void TearDown() override {
    EXPECT_TRUE(delivery->account().isBalanced());
    EXPECT_EQ(delivery->account().waiting, 0U);
  }

  std::shared_ptr<platform::Delivery> delivery;
};

TEST_P(DeliveredFaultTest, IsOvercomeWhereTheRequestMayBeSentTwice) {
  const std::string endpoint = "/sandbox/faults/" + endpointOf(soundCase(GetParam().name));
  const bool isRepeatable = endpoint.find("/PUT/") != endpoint.npos ||
                            endpoint.find("/GET/") != endpoint.npos ||
                            endpoint.ends_with("/events");
  for (const FaultCase& test : faultCases()) {
    if (!test.isOvercome()) continue;
    SCOPED_TRACE(test.fault);
    const OperationCase operation = soundCase(GetParam().name);
    // The events are those of the customer who is signed in.
    services.settings->set("Customer Token", customerToken);
    const bool strikesOnce = test.fault.find("count") != test.fault.npos;
    const std::string fault = R"({"fault":)" + test.fault + (strikesOnce ? "}" : R"(,"count":1})");
    ASSERT_EQ(speaker->send("PUT", endpoint, fault).status, 200);
    requests.clear();
    const auto reports = start(operation, service.baseURL());
    if (test.isWaitedOut) {
      waitForFault();
      ASSERT_TRUE(session->waitOut());
    } else {
      session->wait();
    }
    if (isRepeatable) session->wait();
    expectReport(*reports, isRepeatable ? result() : test.expected, operation.title);
    const std::size_t expected = isRepeatable ? 2 : 1;
    EXPECT_EQ(requests.waitFor(expected), expected);
    speaker->send("DELETE", "/sandbox/faults");
  }
}

INSTANTIATE_TEST_SUITE_P(Endpoints, DeliveredFaultTest, ::testing::ValuesIn(operationCases()),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Endpoints, NetworkFaultTest, ::testing::ValuesIn(operationCases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace ovinta::test
