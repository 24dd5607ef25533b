#include "OvintaSDK/model/Order.h"

#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using OrderTest = SDKFixture;

TEST_F(OrderTest, IsOpenWhileBothSidesStillHaveToAct) {
  using enum OrderState;
  const OrderPtr order = decodeOrder(requiredOrder());
  for (const OrderState state : {created, ready, delayed, cancelled, completed, gone}) {
    for (std::int64_t raw = 0; raw <= 5; ++raw) {
      order->setState(state);
      order->setCustomerState(static_cast<CustomerState>(raw));
      const bool isOpen = (state == created || state == ready || state == delayed) && raw != 5;
      EXPECT_EQ(order->isOpen(), isOpen) << rawValue(state) << ", " << raw;
    }
  }
}

template <class T>
struct Accessor {
  T (Order::*get)() const;
  void (Order::*set)(T);
};

/// Sets each field to a value of its own, and only then reads them back.
template <class T>
void checkAccessors(Order& order, const std::vector<Accessor<T>>& accessors, T (*value)(int)) {
  int number = 0;
  for (const auto& [get, set] : accessors) (order.*set)(value(number++));
  number = 0;
  for (const auto& [get, set] : accessors) {
    EXPECT_EQ((order.*get)(), value(number++));
    (order.*set)(std::nullopt);
    EXPECT_EQ((order.*get)(), std::nullopt);
  }
}

TEST_F(OrderTest, EachMutableFieldIsKeptByItself) {
  using Text = std::optional<std::string>;
  using Date = std::optional<platform::Date>;
  const OrderPtr order = decodeOrder(fullOrder());
  const std::vector<Accessor<Text>> texts{{&Order::pickupType, &Order::setPickupType},
                                          {&Order::customerRating, &Order::setCustomerRating},
                                          {&Order::customerComment, &Order::setCustomerComment},
                                          {&Order::pushToken, &Order::setPushToken}};
  checkAccessors<Text>(*order, texts, [](int i) { return Text(std::to_string(i)); });
  const std::vector<Accessor<Date>> dates{{&Order::etaAt, &Order::setEtaAt},
                                          {&Order::completedAt, &Order::setCompletedAt},
                                          {&Order::createdAt, &Order::setCreatedAt},
                                          {&Order::updatedAt, &Order::setUpdatedAt}};
  checkAccessors<Date>(*order, dates, [](int i) { return Date(kStart + std::chrono::hours(i)); });
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(queues->waitingCount(), 0U);
}

TEST_F(OrderTest, HasALocationWhenBothTextsAreDecimal) {
  const struct {
    platform::Value latitude;
    platform::Value longitude;
    std::optional<platform::Coordinate> coordinate;
  } cases[] = {
      {"40.7", "-74.0", {{40.7, -74.0}}},
      // The range is not checked.
      {"400", "0", {{400, 0}}},
      {nullptr, "-74.0", {}},
      {"40.7", nullptr, {}},
      {"40.7 ", "-74.0", {}},
      {"", "-74.0", {}},
  };
  for (const auto& [latitude, longitude, coordinate] : cases) {
    const OrderPtr order = decodeOrder(
        with(requiredOrder(), {{"site_latitude", latitude}, {"site_longitude", longitude}}));
    const auto location = order->siteLocation();
    EXPECT_EQ(location ? std::optional(location->coordinate) : std::nullopt, coordinate);
    EXPECT_EQ(order->siteDistance({}).has_value(), coordinate.has_value());
  }
  EXPECT_EQ(decodeOrder(fullOrder())->siteDistance({.coordinate = {40.7, -74.0}}), 0.0);
}

}  // namespace
}  // namespace ovinta::test
