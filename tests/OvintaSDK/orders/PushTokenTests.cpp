// Push tokens are put on open orders: the device's on those that lack one, a new one on all.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/orders/OrdersPushTokens.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using test::requiredOrder;
using test::with;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class PushTokenRefresh : public test::SDKFixture {
 protected:
  PushTokenRefresh() {
    signIn();
    Ovinta::setPushToken("device");
  }

  static constexpr std::string_view kPath = "m/v1/orders";

  const std::vector<platform::Dictionary> records{
      with(requiredOrder(1), {{"redemption_code", "A"}}),
      with(requiredOrder(2), {{"redemption_code", "B"}, {"push_token", ""}}),
      with(requiredOrder(3), {{"redemption_code", "C"}, {"push_token", "another"}}),
      requiredOrder(4),
      with(requiredOrder(5), {{"redemption_code", "E"}, {"state", "cancelled"}}),
  };
};

TEST_F(PushTokenRefresh, UpdatesOpenOrdersWithACodeAndNoToken) {
  fetchOrders(records);
  EXPECT_THAT(requestLines(),
              ElementsAre("GET m/v1/orders", "PUT m/v1/orders/A", "PUT m/v1/orders/B"));
  EXPECT_THAT(bodies("PUT", "m/v1/orders/B"), ElementsAre(R"({"data":{"push_token":"device"}})"));
  EXPECT_THAT(requests().back().headers,
              Contains(platform::HeaderField{"Authorization", R"(Token token="customer-token")"}));
  EXPECT_THAT(logLines(), Contains("Updating order's push token using redemption code B"));

  std::vector<std::optional<std::string>> tokens;
  const OrderList orders = Ovinta::orders().all().value();
  for (const OrderPtr& order : orders) tokens.push_back(order->pushToken());
  EXPECT_THAT(tokens, ElementsAre("device", "device", "another", std::nullopt, std::nullopt));
}

TEST_F(PushTokenRefresh, NeedsATokenABaseURLAndACustomer) {
  const auto expectNone = [this](const std::function<void()>& inCallback) {
    answer("GET", kPath, ordersAnswer(records));
    Ovinta::orders().fetch([&](const auto&, const auto&) { inCallback(); });
    drain();
    EXPECT_THAT(requestLines(), Not(Contains(testing::StartsWith("PUT"))));
    EXPECT_EQ(Ovinta::orders().all()->front()->pushToken(), std::nullopt);
  };
  Ovinta::setPushToken(std::nullopt);
  expectNone([] {});
  Ovinta::setPushToken("device");
  expectNone([] { Ovinta::customer().setCurrent(nullptr); });
  EXPECT_THAT(logLines(), Not(Contains("Could not load API url")));
  signIn();
  expectNone([] { UserDefaultsKey::apiBase.remove(); });
  EXPECT_THAT(logLines(), Contains("Could not load API url"));
  EXPECT_EQ(Ovinta::orders().lastFetch()->error, nullptr);
}

TEST_F(PushTokenRefresh, PutsANewTokenOnAllOpenOrdersWithACode) {
  Ovinta::setPushToken(std::nullopt);
  fetchOrders(records);
  for (int i = 0; i < 2; ++i) {
    OrdersPushTokens(Ovinta::orders()).updateWithNewPushToken("another");
    drain();
  }
  EXPECT_THAT(requestLines(),
              ElementsAre("GET m/v1/orders", "PUT m/v1/orders/A", "PUT m/v1/orders/B"))
      << "but for those that carry it";
  EXPECT_THAT(bodies("PUT", "m/v1/orders/A"), ElementsAre(R"({"data":{"push_token":"another"}})"));
  EXPECT_EQ(Ovinta::orders().all()->front()->pushToken(), "another");
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);

  const auto sent = requests().size();
  Ovinta::customer().setCurrent(nullptr);
  OrdersPushTokens(Ovinta::orders()).updateWithNewPushToken("new");
  UserDefaultsKey::apiBase.remove();
  OrdersPushTokens(Ovinta::orders()).updateWithNewPushToken("new");
  drain();
  EXPECT_EQ(requests().size(), sent);
  EXPECT_EQ(Ovinta::orders().all()->front()->pushToken(), "another");
  EXPECT_EQ(std::ranges::count(logLines(), "Could not load API url"), 1);
}

}  // namespace
}  // namespace ovinta
