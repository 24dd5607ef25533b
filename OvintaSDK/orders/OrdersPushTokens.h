#pragma once

#include <string>

#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {

/// The push-token operations of the orders manager, which applications reach through the bindings
/// only. May be used from any thread; the requests' outcome is not reported.
class OrdersPushTokens {
 public:
  explicit OrdersPushTokens(OrdersManager& manager) : manager_(manager) {}

  /// Gives the open orders that have a redemption code and another push token this one, here and at
  /// the service. It does not become the device's.
  void updateWithNewPushToken(const std::string& pushToken) {
    manager_.updatePushTokensWithNewPushToken(pushToken);
  }

  /// Gives the open orders that have a redemption code and no push token the device's, likewise.
  void updateOrdersWithNoPushToken() { manager_.updateOrdersWithNoPushToken(); }

 private:
  OrdersManager& manager_;
};

}  // namespace ovinta
