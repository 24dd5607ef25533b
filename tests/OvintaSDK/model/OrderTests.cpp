#include "OvintaSDK/model/Order.h"

#include "OvintaSDK/model/wire/OrderWire.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;

using OrderTest = SDKFixture;

TEST_F(OrderTest, EachMutableFieldIsKeptByItself) {
  const OrderPtr order = decodeOrder(requiredOrder());
  const auto setAll = [&](const std::vector<std::optional<std::string>>& texts,
                          const std::vector<std::optional<platform::Date>>& dates) {
    order->setPickupType(texts[0]);
    order->setCustomerRating(texts[1]);
    order->setCustomerComment(texts[2]);
    order->setPushToken(texts[3]);
    order->setEtaAt(dates[0]);
    order->setCompletedAt(dates[1]);
    order->setCreatedAt(dates[2]);
    order->setUpdatedAt(dates[3]);
    return *platform::parseJSON(encoded(order))->as<platform::Dictionary>();
  };
  EXPECT_EQ(setAll({"0", "1", "2", "3"}, {kStart, kStart + 1h, kStart + 2h, kStart + 3h}),
            with(requiredOrder(), {{"pickup_type", "0"},
                                   {"customer_rating_value_string", "1"},
                                   {"customer_rating_comments", "2"},
                                   {"push_token", "3"},
                                   {"eta_at", "2021-03-04T20:30:00.000Z"},
                                   {"completed_at", "2021-03-04T21:30:00.000Z"},
                                   {"created_at", "2021-03-04T22:30:00.000Z"},
                                   {"updated_at", "2021-03-04T23:30:00.000Z"}}));
  EXPECT_EQ(setAll(std::vector<std::optional<std::string>>(4),
                   std::vector<std::optional<platform::Date>>(4)),
            requiredOrder());
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(queues->waitingCount(), 0U);
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
