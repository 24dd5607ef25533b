// Payloads of push notifications: they change one order at hand, or have all of them fetched.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using platform::Dictionary;
using test::requiredOrder;
using test::with;
using testing::ElementsAre;
using testing::IsEmpty;

class PushPayload : public test::SDKFixture {
 protected:
  PushPayload() {
    signIn();
    fetchOrders(
        {requiredOrder(42), with(requiredOrder(-3), {{"state", "ready"},
                                                     {"customer_state", "nearby"},
                                                     {"eta_at", "2021-03-04T20:00:00.000Z"}})});
    forgetNotifications();
  }
};

TEST_F(PushPayload, ChangesTheOrderThatItNames) {
  const OrderPtr order = Ovinta::orders().all()->at(0);
  const OrderPtr other = Ovinta::orders().all()->at(1);
  Ovinta::handleRemoteNotification({{"order_id", "42"},
                                    {"order_state", "completed"},
                                    {"customer_state", "waiting"},
                                    {"eta_at", "2021-03-04T15:40:00.250-0500"}});
  EXPECT_EQ(order->state(), OrderState::completed);
  EXPECT_EQ(order->customerState(), CustomerState::waiting);
  EXPECT_EQ(order->etaAt(), test::kStart + std::chrono::milliseconds(600'250));
  EXPECT_THAT(Ovinta::orders().open().value(), ElementsAre(other));
  EXPECT_THAT(Ovinta::orders().closed().value(), IsEmpty());
  EXPECT_THAT(postedNames(), ElementsAre("orderUpdated"));
  EXPECT_EQ(*posted(SDKNotification::orderUpdated)[0].objectAs<OrderPtr>(), order);
  drain();
  EXPECT_EQ(requests().size(), 1u) << "the fetch before";
}

TEST_F(PushPayload, PassesOverWhatItCannotUse) {
  const OrderPtr order = Ovinta::orders().all()->at(1);
  const auto etaAt = order->etaAt();
  const Dictionary payloads[] = {
      {},
      {{"order_state", "unheard of"}, {"customer_state", ""}, {"eta_at", "soon"}},
      {{"order_state", 4}, {"customer_state", nullptr}, {"eta_at", 1614889800}},
      {{"order_state", "Completed"}, {"eta_at", "2021-03-04T20:00:00.000Z x"}},
  };
  for (const Dictionary& payload : payloads) {
    forgetNotifications();
    Ovinta::handleRemoteNotification(with(payload, {{"order_id", "-3"}}));
    EXPECT_EQ(order->state(), OrderState::ready);
    EXPECT_EQ(order->customerState(), CustomerState::nearby);
    EXPECT_EQ(order->etaAt(), etaAt);
    EXPECT_THAT(postedNames(), ElementsAre("orderUpdated")) << "all the same";
  }
}

TEST_F(PushPayload, HasAllOrdersFetchedWhenItNamesNoneAtHand) {
  const Dictionary payloads[] = {
      {},
      {{"order_id", 42}},
      {{"order_id", ""}},
      {{"order_id", "4x"}},
      {{"order_id", " 42"}},
      {{"order_id", "42.0"}},
      {{"order_id", "99999999999999999999"}},
      {{"order_id", "43"}, {"order_state", "completed"}},
  };
  std::size_t fetches = requests().size();
  for (const Dictionary& payload : payloads) {
    forgetNotifications();
    Ovinta::handleRemoteNotification(payload);
    EXPECT_THAT(postedNames(), IsEmpty());
    drain();
    EXPECT_EQ(requests().size(), ++fetches);
    EXPECT_THAT(postedNames(), ElementsAre("ordersUpdated"));
  }
  Ovinta::orders().setAll(std::nullopt);
  Ovinta::handleRemoteNotification({{"order_id", "42"}});
  drain();
  EXPECT_EQ(requests().size(), ++fetches) << "before the first fetch no order is at hand";
}

}  // namespace
}  // namespace ovinta
