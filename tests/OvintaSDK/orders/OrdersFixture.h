#pragma once

#include <string>
#include <vector>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {

class OrdersFixture : public SDKFixture {
 protected:
  OrdersFixture() {
    answer("POST", "m/v1/events", Answer::json(200, ""));
    answer("POST", "m/v1/customer",
           dataAnswer(with(customerRecord(), {{"api_token", "new-token"}})));
  }

  /// The three lists as "all: orders 1 2; open: orders 1; closed: orders 2".
  static std::string lists() {
    const OrdersManager& orders = Ovinta::orders();
    return "all: " + textOf(orders.all()) + "; open: " + textOf(orders.open()) +
           "; closed: " + textOf(orders.closed());
  }

  /// Seconds since the test began, and the error.
  static std::string lastFetch() {
    const auto last = Ovinta::orders().lastFetch();
    if (!last) return "none";
    const auto after = std::chrono::duration_cast<std::chrono::seconds>(last->date - kStart);
    return std::to_string(after.count()) + " s, " + textOf(last->error);
  }

  static OrderPtr order(std::size_t index) { return Ovinta::orders().all()->at(index); }

  void useBaseURL() { UserDefaultsKey::apiBase.set(std::string(kBaseURL)); }

  OrdersManager& orders = Ovinta::orders();
};

/// Lists that were never set.
inline constexpr std::string_view kNoLists = "all: ; open: ; closed: ";

}  // namespace ovinta::test
