#include "OvintaSDK/api/CreateOrderOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/orders/CustomerInfoOf.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "OvintaSDK/orders/Refuse.h"
#include "platform/Services.h"

namespace ovinta {

void OrdersManager::create(std::int64_t siteID, std::string partnerIdentifier,
                           const CustomerInfo& customerInfo,
                           std::optional<PickupWindow> pickupWindow, OrderState state,
                           OrderCallback callback) {
  create(CreateOrderInfo::withCustomerInfo(siteID, std::move(partnerIdentifier), customerInfo,
                                           OvintaState::current().pushToken.get(), state,
                                           pickupWindow),
         std::move(callback));
}

void OrdersManager::create(std::int64_t siteID, std::string partnerIdentifier,
                           const CustomerInfo& customerInfo,
                           std::optional<PickupWindow> pickupWindow, OrderCallback callback) {
  create(CreateOrderInfo::withCustomerInfo(siteID, std::move(partnerIdentifier), customerInfo,
                                           OvintaState::current().pushToken.get(), std::nullopt,
                                           pickupWindow),
         std::move(callback));
}

void OrdersManager::create(const CreateOrderInfo& info, OrderCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(callback, recordRefusal(OrdersManagerErrorType::loadingApiUrl));
  if (const CustomerPtr customer = OvintaState::current().customer().current()) {
    logLine("Creating order for existing customer");
    createOrder(*apiURL, customer, info, std::move(callback));
  } else if (!info.customerName) {
    refuse(callback, recordRefusal(OrdersManagerErrorType::loadingCustomer));
  } else {
    createCustomer(*apiURL, info, callback);
  }
}

void OrdersManager::createCustomer(const std::string& apiURL, const CreateOrderInfo& info,
                                   const OrderCallback& callback) {
  // Ordering for a new customer counts as consent.
  const CustomerConsent consent{.termsOfService = true, .ageVerification = true};
  OvintaState::current().customer().create(
      customerInfoOf(info), consent,
      [this, apiURL, info, callback](const CustomerPtr& customer, const ErrorPtr& error) {
        if (customer && !error) return createOrder(apiURL, customer, info, callback);
        refuse(callback, recordRefusal(OrdersManagerErrorType::loadingCustomer));
      });
}

void OrdersManager::createOrder(const std::string& apiURL, const CustomerPtr& customer,
                                const CreateOrderInfo& info, OrderCallback callback) {
  OvintaState::current().apiQueue().addOperation(std::make_shared<CreateOrderOperation>(
      apiURL, customer, info,
      [this, callback = std::move(callback)](const OrderPtr& order, const ErrorPtr& error) {
        if (order) reportPermission(*order);
        if (callback) callback(order, error);
      }));
}

void OrdersManager::reportPermission(const Order& order) {
  const auto status =
      stateFromRawValue<LocationAuthStatus>(platform::services().location->authorizationStatus());
  if (status) sendEvent(OrderEvent::permissionUpdate(order.id, *status), {});
}

}  // namespace ovinta
