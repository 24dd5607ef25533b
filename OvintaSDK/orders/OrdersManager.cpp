#include "OvintaSDK/orders/OrdersManager.h"

#include <utility>

#include "OvintaSDK/orders/Orders.h"

namespace ovinta {

template class ManagerError<OrdersManagerErrorType>;

OrdersManager::~OrdersManager() = default;

std::optional<OrderList> OrdersManager::all() const { return orders_->all(); }

void OrdersManager::setAll(std::optional<OrderList> orders) { orders_->setAll(std::move(orders)); }

std::optional<OrderList> OrdersManager::open() const { return orders_->open(); }

void OrdersManager::setOpen(std::optional<OrderList> orders) {
  orders_->setOpen(std::move(orders));
}

std::optional<OrderList> OrdersManager::closed() const { return orders_->closed(); }

void OrdersManager::setClosed(std::optional<OrderList> orders) {
  orders_->setClosed(std::move(orders));
}

std::optional<LastFetch> OrdersManager::lastFetch() const { return orders_->lastFetch(); }

void OrdersManager::setLastFetch(std::optional<LastFetch> fetch) {
  orders_->setLastFetch(std::move(fetch));
}

void OrdersManager::fetch(OrdersCallback callback) { orders_->fetch(std::move(callback)); }

void OrdersManager::create(const CreateOrderInfo& info, OrderCallback callback) {
  orders_->create(info, std::move(callback));
}

void OrdersManager::create(std::int64_t siteID, std::string partnerIdentifier,
                           const CustomerInfo& customerInfo,
                           std::optional<PickupWindow> pickupWindow, OrderState state,
                           OrderCallback callback) {
  orders_->create(siteID, std::move(partnerIdentifier), customerInfo, pickupWindow, state,
                  std::move(callback));
}

void OrdersManager::create(std::int64_t siteID, std::string partnerIdentifier,
                           const CustomerInfo& customerInfo,
                           std::optional<PickupWindow> pickupWindow, OrderCallback callback) {
  orders_->create(siteID, std::move(partnerIdentifier), customerInfo, pickupWindow, std::nullopt,
                  std::move(callback));
}

void OrdersManager::fetchWithRedemptionCode(const std::string& redemptionCode,
                                            OrderCallback callback) {
  orders_->fetchWithRedemptionCode(redemptionCode, std::move(callback));
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const CustomerInfo& customerInfo,
                                            std::optional<std::string> pickupType,
                                            OrderCallback callback) {
  orders_->claim(redemptionCode, customerInfo, std::move(pickupType), std::move(callback));
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const CustomerInfo& customerInfo,
                                            OrderCallback callback) {
  orders_->claim(redemptionCode, customerInfo, std::nullopt, std::move(callback));
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const ClaimOrderInfo& claimOrderInfo,
                                            const std::optional<CustomerConsent>& customerConsent,
                                            OrderCallback callback) {
  orders_->claim(redemptionCode, claimOrderInfo, customerConsent, std::move(callback));
}

void OrdersManager::event(const Order& order, CustomerState customerState, OrderCallback callback) {
  event(order.id, customerState, std::move(callback));
}

void OrdersManager::event(std::int64_t orderID, CustomerState customerState,
                          OrderCallback callback) {
  orders_->event(OrderEvent::customerStateChange(orderID, customerState, std::nullopt),
                 std::move(callback));
}

void OrdersManager::event(std::int64_t orderID, OrderState state, OrderCallback callback) {
  orders_->event(OrderEvent::stateChange(orderID, state), std::move(callback));
}

void OrdersManager::rateOrder(std::int64_t orderID, std::int64_t rating,
                              std::optional<std::string> comments, OrderCallback callback) {
  orders_->event(OrderEvent::rating(orderID, rating, std::move(comments)), std::move(callback));
}

void OrdersManager::updateOrderFromNotification(const platform::Dictionary& userInfo) {
  orders_->applyPayload(userInfo);
}

void OrdersManager::updateOrdersWithNoPushToken() { orders_->updateOrdersWithNoPushToken(); }

void OrdersManager::updatePushTokensWithNewPushToken(const std::string& pushToken) {
  orders_->updatePushTokens(pushToken);
}

}  // namespace ovinta
