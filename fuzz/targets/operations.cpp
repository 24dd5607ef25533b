#include <charconv>
#include <deque>

#include "OvintaSDK/core/facade/Ovinta.h"
#include "fuzz/Platform.h"
#include "fuzz/Target.h"
#include "platform/Services.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::fuzz {
namespace {

using platform::simulation::Answer;

/// The status, then the body; before that, where one begins with "@", the upgrade link up to the
/// next blank. What begins with no number is a failure.
Answer answerOf(std::string_view line) {
  int status = 0;
  const auto [rest, error] = std::from_chars(line.data(), line.data() + line.size(), status);
  if (error != std::errc()) return Answer::failure("No answer");
  line.remove_prefix(static_cast<std::size_t>(rest - line.data()));
  if (line.starts_with(' ')) line.remove_prefix(1);
  if (!line.starts_with('@')) return Answer::json(status, std::string(line));
  const std::size_t blank = std::min(line.find(' '), line.size() - 1);
  return Answer::json(status, std::string(line.substr(blank + 1)))
      .withHeader("App-Upgrade-URL", std::string(line.substr(1, blank - 1)));
}

/// How often callbacks were called, and may be at most and at least.
struct Calls {
  int made = 0;
  int atMost = 0;
  int atLeast = 0;
};

/// A callback that is promised to come as often.
auto counted(Calls& calls, int atLeast = 1, int atMost = 1) {
  calls.atLeast += atLeast;
  calls.atMost += atMost;
  return [&calls](const auto&...) { ++calls.made; };
}

const platform::CircularRegion kRegion{
    .center = {.latitude = 40.7, .longitude = -74}, .radius = 500, .identifier = "region"};

void callCustomer(char step, Calls& calls) {
  CustomerManager& customer = Ovinta::customer();
  switch (step) {
    case 'a':
      return customer.create({.name = "Bob"}, true, true, counted(calls));
    case 'b':
      return customer.update({.name = "Bob"}, counted(calls));
    case 'c':
      return customer.login("a@b", "c", counted(calls));
    case 'd':
      return customer.loginWithToken("token", counted(calls));
    case 'e':
      return customer.signUp("a@b", "c", counted(calls));
    case 'f':
      return customer.requestNewPassword("a@b", counted(calls));
    case 'g':
      return customer.setNewPassword("token", "a", "a", counted(calls));
    case 'w':
      return customer.logout();
    default:
      return;
  }
}

void callOrders(char step, Calls& calls) {
  OrdersManager& orders = Ovinta::orders();
  const CustomerInfo bob{.name = "Bob"};
  switch (step) {
    case 'h':
      return orders.create(42, "P-1", bob, std::nullopt, counted(calls));
    case 'i':
      return orders.fetch(counted(calls));
    case 'j':
      return orders.event(7, CustomerState::arrived, counted(calls, 0));
    case 'k':
      return orders.fetchWithRedemptionCode("CODE7", counted(calls));
    case 'l':
      return orders.claimWithRedemptionCode("CODE7", bob, counted(calls));
    case 'm':
      return orders.updatePushTokensWithNewPushToken("push-token");
    case 's':
      return Ovinta::handleRemoteNotification({{"order_id", "7"}, {"order_state", "ready"}});
    default:
      return;
  }
}

void callSites(char step, Calls& calls) {
  SitesManager& sites = Ovinta::sites();
  switch (step) {
    case 'n':
      return sites.fetch("b & c", 1, counted(calls));
    case 'o':
      return sites.fetch(kRegion, 1, counted(calls));
    case 'p':
      return Ovinta::config().fetch(counted(calls));
    case 'q':
      return sites.fetchAll(std::nullopt, counted(calls));
    case 'r':
      return Ovinta::notify().createForSitesInRegion(kRegion, {}, counted(calls, 1, 2));
    default:
      return;
  }
}

/// First the steps, a letter each; then what the service answers, a line each, in the order in
/// which it is asked or, for 'x', to what was asked last.
void run(std::string_view input) {
  static Platform& platform = Platform::shared();
  constexpr std::size_t kMostSteps = 64;
  const std::string_view steps = takeLine(input).substr(0, kMostSteps);
  const auto nextAnswer = [&input] { return answerOf(takeLine(input)); };

  Calls calls;
  Ovinta::customer().setCurrent(std::make_shared<const Customer>(test::customer()));
  for (const char step : steps) {
    callCustomer(step, calls);
    callOrders(step, calls);
    callSites(step, calls);
    if (step == 't') platform.time.advance(std::chrono::seconds(1));
    if (step == 'u') {
      platform.location->deliver({.coordinate = kRegion.center, .horizontalAccuracy = 5});
    }
    if (step == 'x') {
      platform.queues->runAll();
      platform.requests->answerLast(nextAnswer);
    }
    if (step == '.') platform.drain(nextAnswer);
  }
  platform.drain(nextAnswer);
  require(calls.made >= calls.atLeast && calls.made <= calls.atMost,
          "every callback comes as often as promised");
  platform.reset();
}

const Target kTarget("operations", run);

}  // namespace
}  // namespace ovinta::fuzz
