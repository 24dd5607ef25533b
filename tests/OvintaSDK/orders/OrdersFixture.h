#pragma once

#include <string>
#include <vector>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {

/// The token of a customer that is created.
inline constexpr const char* kNewToken = "new-token";

/// A service that takes events and customers.
class OrdersFixture : public SDKFixture {
 protected:
  OrdersFixture() {
    answer("POST", "m/v1/events", Answer::json(200, ""));
    answer("POST", "m/v1/customer", dataAnswer(with(customerRecord(), {{"api_token", kNewToken}})));
  }

  using Lists = std::vector<Item>;

  static Lists lists() {
    const OrdersManager& orders = Ovinta::orders();
    return {itemOf(orders.all()), itemOf(orders.open()), itemOf(orders.closed())};
  }

  static Lists listsOf(const Ids& all, const Ids& open, const Ids& closed) {
    return {theOrders(all), theOrders(open), theOrders(closed)};
  }

  /// How a fetch ended: seconds since the test began, and the error.
  using End = std::pair<std::int64_t, Item>;

  static std::optional<End> lastFetch() {
    const auto last = Ovinta::orders().lastFetch();
    if (!last) return std::nullopt;
    const auto after = std::chrono::duration_cast<std::chrono::seconds>(last->date - kStart);
    return End(after.count(), itemOf(last->error));
  }

  static OrderPtr order(std::size_t index) { return Ovinta::orders().all()->at(index); }

  void useBaseURL() { UserDefaultsKey::apiBase.set(std::string(kBaseURL)); }

  const Step requestedOrders = requested("GET", "m/v1/orders", kToken);
  /// Lists that were never set.
  const Lists noLists = Lists(3);
  OrdersManager& orders = Ovinta::orders();
};

}  // namespace ovinta::test
