#include "OvintaSDK/api/UpdateOrderOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {

void OrdersManager::updateOrdersWithNoPushToken() {
  const auto pushToken = OvintaState::current().pushToken.get();
  if (!pushToken) return;
  putPushToken(*pushToken, [](const Order& order) { return !presence(order.pushToken()); });
}

void OrdersManager::updatePushTokensWithNewPushToken(const std::string& pushToken) {
  putPushToken(pushToken,
               [&pushToken](const Order& order) { return order.pushToken() != pushToken; });
}

void OrdersManager::putPushToken(const std::string& pushToken,
                                 const std::function<bool(const Order&)>& isWanted) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) {
    logRefusal(OrdersManagerErrorType::loadingApiUrl);
    return;
  }
  const CustomerPtr customer = OvintaState::current().customer().current();
  if (!customer) return;
  for (const OrderPtr& order : open().value_or(OrderList{})) {
    if (!order->redemptionCode || !isWanted(*order)) continue;
    order->setPushToken(pushToken);
    logLine("Updating order's push token using redemption code " + *order->redemptionCode);
    OvintaState::current().apiQueue().addOperation(std::make_shared<UpdateOrderOperation>(
        *apiURL, customer->token, *order->redemptionCode, pushToken, nullptr));
  }
}

}  // namespace ovinta
