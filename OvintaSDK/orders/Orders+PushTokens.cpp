#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/api/UpdateOrderOperation.h"
#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {

void Orders::updateOrdersWithNoPushToken() {
  const auto pushToken = context_->pushToken.get();
  if (!pushToken) return;
  putPushToken(*pushToken, [](const Order& order) { return !presence(order.pushToken()); });
}

void Orders::updatePushTokens(const std::string& pushToken) {
  putPushToken(pushToken,
               [&pushToken](const Order& order) { return order.pushToken() != pushToken; });
}

void Orders::putPushToken(const std::string& pushToken,
                          const std::function<bool(const Order&)>& isWanted) {
  const auto api = APIClient::of(context_);
  if (!api) {
    logRefusal(*context_, OrdersManagerErrorType::loadingApiUrl);
    return;
  }
  const CustomerPtr customer = currentCustomer();
  if (!customer) return;
  for (const OrderPtr& order : open().value_or(OrderList{})) {
    if (!order->redemptionCode || !isWanted(*order)) continue;
    order->setPushToken(pushToken);
    context_->log("Updating order's push token using redemption code " + *order->redemptionCode);
    api->send<UpdateOrderOperation>(customer->token, *order->redemptionCode, pushToken, nullptr);
  }
}

}  // namespace ovinta
