// Payloads of push notifications change one order at hand, or have all of them fetched. Push tokens
// are put on open orders: the device's on those that lack one, a new one on all.
#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "platform/JSON.h"
#include "tests/OvintaSDK/orders/OrdersFixture.h"
#include "tests/support/AtOnce.h"

namespace ovinta::test {
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
  EXPECT_EQ(order(0)->etaAt(), kStart + std::chrono::milliseconds(600'250));
  EXPECT_EQ(lists(), listsOf({42, -3}, {-3}, {}));
  EXPECT_THAT(outcome(), are(posted(SDKNotification::orderUpdated, theOrder(42))))
      << "and nothing is fetched";
}

TEST_F(PushPayload, LeavesOpenAsTheLastOfSeveralThreadsFoundAll) {
  constexpr int kOrders = 300;
  std::vector<Dictionary> records;
  for (int id = 0; id < kOrders; ++id) records.push_back(requiredOrder(id));
  fetchOrders(records);
  const auto complete = [](int id) {
    Ovinta::handleRemoteNotification(
        {{"order_id", std::to_string(id)}, {"order_state", "completed"}});
  };
  for (int id = 0; id < kOrders; id += 2) {
    atOnce([&] { complete(id); }, [&] { complete(id + 1); });
    ASSERT_EQ(orders.open()->size(), static_cast<std::size_t>(kOrders - id - 2));
  }
}

TEST_F(PushPayload, LeavesOpenAsALookAtAllOrdersWouldFindIt) {
  constexpr std::size_t kOrders = 8;
  std::mt19937 random(1);
  const auto any = [&random](std::size_t count) { return random() % count; };
  OrderList known;
  for (std::size_t id = 0; id < kOrders; ++id) known.push_back(decodeOrder(requiredOrder(id)));
  known.push_back(decodeOrder(requiredOrder(3)));
  known.push_back(known[5]);
  std::optional<OrderList> expected = orders.open();
  const auto changeDirectly = [&] {
    const OrderPtr& order = known[any(known.size())];
    order->setState(any(2) == 0 ? OrderState::created : OrderState::gone);
    order->setCustomerState(any(3) > 0 ? CustomerState::nearby : CustomerState::completed);
  };
  const auto push = [&] {
    Ovinta::handleRemoteNotification(
        {{"order_id", std::to_string(any(kOrders))},
         {any(4) > 0 ? "order_state" : "neither", any(2) == 0 ? "ready" : "completed"}});
    expected = orders.all();
    std::erase_if(*expected, [](const OrderPtr& order) { return !order->isOpen(); });
  };
  orders.setAll(known);
  for (int step = 0; step < 3000; ++step) {
    switch (any(12)) {
      case 0:
        orders.setOpen(expected = OrderList{known[any(kOrders)]});
        break;
      case 1:
        std::ranges::shuffle(known, random);
        orders.setAll(known);
        break;
      case 2:
      case 3:
        changeDirectly();
        break;
      default:
        push();
    }
    ASSERT_EQ(orders.open(), expected) << "step " << step;
  }
}

TEST_F(PushPayload, KeepsNoOrderAliveThatIsInNoList) {
  OrderPtr order = decodeOrder(requiredOrder(1));
  const std::weak_ptr<Order> held = order;
  orders.setAll(OrderList{std::move(order)});
  Ovinta::handleRemoteNotification({{"order_id", "1"}, {"order_state", "ready"}});
  orders.setAll(std::nullopt);
  queues->runAll();
  EXPECT_FALSE(held.expired()) << "it is open";
  orders.setOpen(std::nullopt);
  happened();
  EXPECT_TRUE(held.expired());
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
    EXPECT_THAT(happened(), are(posted(SDKNotification::orderUpdated, theOrder(-3))))
        << "all the same";
  }
}

TEST_F(PushPayload, HasAllOrdersFetchedWhenItNamesNoneAtHand) {
  const auto expectFetch = [this](const Dictionary& payload) {
    Ovinta::handleRemoteNotification(payload);
    EXPECT_THAT(happened(), are(logged(Line::gettingOrders))) << platform::writeJSON(payload);
    EXPECT_THAT(outcome({Step::requested, Step::posted}),
                are(requestedOrders, posted(SDKNotification::ordersUpdated, theOrders({42, -3}))));
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

  static Step updated(const std::string& code, const std::string& pushToken) {
    return requested("PUT", "m/v1/orders/" + code, kToken,
                     R"({"push_token":")" + pushToken + "\"}");
  }

  /// What comes of a new token.
  Steps renew(const std::string& token) {
    orders.updatePushTokensWithNewPushToken(token);
    return outcome();
  }
};

TEST_F(PushTokenRefresh, UpdatesOpenOrdersWithACodeAndNoToken) {
  EXPECT_EQ(tokensAfterFetch(), "device device another - - ");
  EXPECT_THAT(happened({Step::requested}),
              are(requestedOrders, updated("A", "device"), updated("B", "device")));
  EXPECT_THAT(logLines(), testing::Contains(Line::renewingPushToken("B")));
}

TEST_F(PushTokenRefresh, NeedsATokenABaseURLAndACustomer) {
  Ovinta::setPushToken(std::nullopt);
  EXPECT_EQ(tokensAfterFetch(), "-  another - - ");
  Ovinta::setPushToken("device");
  EXPECT_EQ(tokensAfterFetch([] { Ovinta::customer().setCurrent(nullptr); }), "-  another - - ");
  EXPECT_THAT(happened(), testing::Not(testing::Contains(logged(Message::noURL))));
  signIn();
  EXPECT_EQ(tokensAfterFetch([] { UserDefaultsKey::apiBase.remove(); }), "-  another - - ");
  EXPECT_THAT(happened(), testing::Contains(logged(Message::noURL)));
  EXPECT_EQ(lastFetch(), End(0, {}));
  for (const char* path : {"m/v1/orders/A", "m/v1/orders/B"}) {
    EXPECT_THAT(bodies("PUT", path), testing::IsEmpty());
  }
}

TEST_F(PushTokenRefresh, PutsANewTokenOnAllOpenOrdersWithACode) {
  Ovinta::setPushToken(std::nullopt);
  tokensAfterFetch();
  happened();
  EXPECT_THAT(renew("another"),
              are(logged(Line::renewingPushToken("A")), logged(Line::renewingPushToken("B")),
                  updated("A", "another"), updated("B", "another")));
  EXPECT_THAT(renew("another"), are()) << "all carry it";
  EXPECT_EQ(tokens(), "another another another - - ");
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);
  Ovinta::customer().setCurrent(nullptr);
  EXPECT_THAT(renew("new"), are());
  UserDefaultsKey::apiBase.remove();
  EXPECT_THAT(renew("new"), are(logged(Message::noURL)));
}

}  // namespace
}  // namespace ovinta::test
