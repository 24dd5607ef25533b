#include "OvintaSDK/model/Order.h"

#include "OvintaSDK/model/wire/OrderWire.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using OrderTest = SDKFixture;

TEST_F(OrderTest, EachMutableFieldIsKeptByItself) {
  const auto expectKept = [this](const char* key, auto set, const auto& value, const char* text) {
    const OrderPtr order = decodeOrder(requiredOrder());
    ((*order).*set)(value);
    EXPECT_EQ(*platform::parseJSON(encoded(order))->as<platform::Dictionary>(),
              with(requiredOrder(), {{key, text}}));
    ((*order).*set)(std::nullopt);
    EXPECT_EQ(encoded(order), encoded(decodeOrder(requiredOrder())));
    EXPECT_EQ(queues->waitingCount(), 0U);
  };
  expectKept("pickup_type", &Order::setPickupType, "text", "text");
  expectKept("customer_rating_value_string", &Order::setCustomerRating, "text", "text");
  expectKept("customer_rating_comments", &Order::setCustomerComment, "text", "text");
  expectKept("push_token", &Order::setPushToken, "text", "text");
  const char* const instant = "2021-03-04T20:30:00.000Z";
  expectKept("eta_at", &Order::setEtaAt, kStart, instant);
  expectKept("completed_at", &Order::setCompletedAt, kStart, instant);
  expectKept("created_at", &Order::setCreatedAt, kStart, instant);
  expectKept("updated_at", &Order::setUpdatedAt, kStart, instant);
}

TEST_F(OrderTest, HasTheLocationOfItsSite) {
  const OrderPtr order = decodeOrder(fullOrder());
  EXPECT_EQ(order->siteLocation().value().coordinate, (platform::Coordinate{40.7, -74.0}));
  EXPECT_EQ(order->siteDistance({.coordinate = {40.7, -74.0}}), 0.0);
  const OrderPtr lost = decodeOrder(without(fullOrder(), "site_latitude"));
  EXPECT_FALSE(lost->siteLocation() || lost->siteDistance({}));
}

}  // namespace
}  // namespace ovinta::test
