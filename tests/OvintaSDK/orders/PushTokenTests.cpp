// Push tokens are put on open orders: the device's on those that lack one, a new one on all.
#include <gmock/gmock.h>

#include "OvintaSDK/orders/OrdersPushTokens.h"
#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta {
namespace {

class PushTokenRefresh : public OrdersFixture {
 protected:
  PushTokenRefresh() {
    signIn();
    Ovinta::setPushToken("device");
    answer(
        "GET", "m/v1/orders",
        ordersAnswer({with(requiredOrder(1), {{"redemption_code", "A"}}),
                      with(requiredOrder(2), {{"redemption_code", "B"}, {"push_token", ""}}),
                      with(requiredOrder(3), {{"redemption_code", "C"}, {"push_token", "another"}}),
                      requiredOrder(4),
                      with(requiredOrder(5), {{"redemption_code", "E"}, {"state", "cancelled"}})}));
  }

  /// The orders' tokens after a fetch during whose callback something else is done.
  std::string tokensAfterFetch(const std::function<void()>& inCallback = [] {}) {
    orders.fetch([&](const auto&, const auto&) { inCallback(); });
    drain();
    return tokens();
  }

  std::string tokens() {
    std::string tokens;
    const OrderList all = *orders.all();
    for (const OrderPtr& each : all) tokens += each->pushToken().value_or("-") + " ";
    return tokens;
  }

  /// Which orders' tokens are updated to a new one.
  std::string renew(const std::string& token) {
    OrdersPushTokens(orders).updateWithNewPushToken(token);
    drain();
    return happened();
  }
};

TEST_F(PushTokenRefresh, UpdatesOpenOrdersWithACodeAndNoToken) {
  EXPECT_EQ(tokensAfterFetch(), "device device another - - ");
  EXPECT_THAT(happened({"PUT"}), R"(
PUT m/v1/orders/A as customer-token {"push_token":"device"}
PUT m/v1/orders/B as customer-token {"push_token":"device"})");
  EXPECT_THAT(logLines(), testing::Contains("Updating order's push token using redemption code B"));
}

TEST_F(PushTokenRefresh, NeedsATokenABaseURLAndACustomer) {
  Ovinta::setPushToken(std::nullopt);
  EXPECT_EQ(tokensAfterFetch(), "-  another - - ");
  Ovinta::setPushToken("device");
  EXPECT_EQ(tokensAfterFetch([] { Ovinta::customer().setCurrent(nullptr); }), "-  another - - ");
  EXPECT_THAT(happened(), testing::Not(testing::HasSubstr("Could not load API url")));
  signIn();
  EXPECT_EQ(tokensAfterFetch([] { UserDefaultsKey::apiBase.remove(); }), "-  another - - ");
  EXPECT_THAT(happened(), testing::HasSubstr("\nlog Could not load API url"));
  EXPECT_EQ(lastFetch(), "0 s, ");
  EXPECT_THAT(requestLines(), testing::Each("GET m/v1/orders"));
}

TEST_F(PushTokenRefresh, PutsANewTokenOnAllOpenOrdersWithACode) {
  Ovinta::setPushToken(std::nullopt);
  tokensAfterFetch();
  happened();
  EXPECT_EQ(renew("another"), R"(
log Updating order's push token using redemption code A
log Updating order's push token using redemption code B
PUT m/v1/orders/A as customer-token {"push_token":"another"}
PUT m/v1/orders/B as customer-token {"push_token":"another"})");
  EXPECT_EQ(renew("another"), "") << "all carry it";
  EXPECT_EQ(tokens(), "another another another - - ");
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);
  Ovinta::customer().setCurrent(nullptr);
  EXPECT_EQ(renew("new"), "");
  UserDefaultsKey::apiBase.remove();
  EXPECT_EQ(renew("new"), "\nlog Could not load API url");
}

}  // namespace
}  // namespace ovinta
