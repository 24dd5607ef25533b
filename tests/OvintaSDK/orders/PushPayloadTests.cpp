// Payloads of push notifications: they change one order at hand, or have all of them fetched.
#include <gmock/gmock.h>

#include "platform/JSON.h"
#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta {
namespace {

using platform::Dictionary;

class PushPayload : public OrdersFixture {
 protected:
  PushPayload() {
    signIn();
    fetchOrders(
        {requiredOrder(42), with(requiredOrder(-3), {{"state", "ready"},
                                                     {"customer_state", "nearby"},
                                                     {"eta_at", "2021-03-04T20:00:00.000Z"}})});
    happened();
  }
};

TEST_F(PushPayload, ChangesTheOrderThatItNames) {
  Ovinta::handleRemoteNotification({{"order_id", "42"},
                                    {"order_state", "completed"},
                                    {"customer_state", "waiting"},
                                    {"eta_at", "2021-03-04T15:40:00.250-0500"}});
  EXPECT_EQ(order(0)->state(), OrderState::completed);
  EXPECT_EQ(order(0)->customerState(), CustomerState::waiting);
  EXPECT_EQ(order(0)->etaAt(), test::kStart + std::chrono::milliseconds(600'250));
  EXPECT_EQ(lists(), "all: orders 42 -3; open: orders -3; closed: orders");
  drain();
  EXPECT_EQ(happened(), "\nposted orderUpdated order 42") << "and nothing is fetched";
}

TEST_F(PushPayload, PassesOverWhatItCannotUse) {
  const auto etaAt = order(1)->etaAt();
  const Dictionary payloads[] = {
      {},
      {{"order_state", "unheard of"}, {"customer_state", ""}, {"eta_at", "soon"}},
      {{"order_state", 4}, {"customer_state", nullptr}, {"eta_at", 1614889800}},
      {{"order_state", "Completed"}, {"eta_at", "2021-03-04T20:00:00.000Z x"}},
  };
  for (const Dictionary& payload : payloads) {
    Ovinta::handleRemoteNotification(with(payload, {{"order_id", "-3"}}));
    EXPECT_EQ(order(1)->state(), OrderState::ready);
    EXPECT_EQ(order(1)->customerState(), CustomerState::nearby);
    EXPECT_EQ(order(1)->etaAt(), etaAt);
    EXPECT_EQ(happened(), "\nposted orderUpdated order -3") << "all the same";
  }
}

TEST_F(PushPayload, HasAllOrdersFetchedWhenItNamesNoneAtHand) {
  const auto expectFetch = [this](const Dictionary& payload) {
    Ovinta::handleRemoteNotification(payload);
    EXPECT_EQ(happened(), "\nlog Getting Orders") << platform::writeJSON(payload);
    drain();
    EXPECT_EQ(happened({"GET", "posted"}),
              "\nGET m/v1/orders as customer-token\nposted ordersUpdated orders 42 -3");
  };
  const platform::Value numbers[] = {42, "", "4x", " 42", "42.0", "99999999999999999999", "43"};
  expectFetch({});
  for (const auto& number : numbers) {
    expectFetch({{"order_id", number}, {"order_state", "completed"}});
  }
  // Before the first fetch no order is at hand.
  orders.setAll(std::nullopt);
  expectFetch({{"order_id", "42"}});
}

}  // namespace
}  // namespace ovinta
