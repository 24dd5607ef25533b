#include "OvintaSDK/api/ClaimOrderWithCodeOperation.h"
#include "OvintaSDK/api/GetOrderWithCodeOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/PostNotification.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/model/RequiredTextAccess.h"
#include "OvintaSDK/orders/CustomerInfoOf.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "OvintaSDK/orders/Refuse.h"

namespace ovinta {
namespace {

void logClaim(const std::string& redemptionCode) {
  logLine("Claiming order using redemption code " + redemptionCode);
}

ErrorPtr logMissingConsent() {
  auto error = std::make_shared<const CustomerManagerError>(
      CustomerManagerErrorType::missingCustomerConsent);
  logLine(error->localizedDescription());
  return error;
}

}  // namespace

void OrdersManager::fetchWithRedemptionCode(const std::string& redemptionCode,
                                            OrderCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) {
    const ErrorPtr error = recordRefusal(OrdersManagerErrorType::loadingApiUrl);
    refuse(callback, error);
    return postNotification(SDKNotification::ordersError, error);
  }
  logLine("Getting order using redemption code");
  OvintaState::current().apiQueue().addOperation(std::make_shared<GetOrderWithCodeOperation>(
      *apiURL, redemptionCode,
      [callback = std::move(callback)](const OrderPtr& order, const ErrorPtr& error) {
        if (!order) logLine("Got an error getting order with redemption code");
        if (callback) callback(order, error);
      }));
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const CustomerInfo& customerInfo,
                                            std::optional<std::string> pickupType,
                                            const OrderCallback& callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(callback, recordRefusal(OrdersManagerErrorType::loadingApiUrl));
  logClaim(redemptionCode);
  const CustomerPtr customer = OvintaState::current().customer().current();
  if (!customer) return refuse(callback, logRefusal(OrdersManagerErrorType::loadingCustomer));
  claim(*apiURL, redemptionCode, customer,
        ClaimOrderInfo::withCustomerInfo(
            customerInfo, RequiredTextAccess::of(OvintaState::current().pushToken.get()),
            std::move(pickupType)),
        callback);
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const CustomerInfo& customerInfo,
                                            const OrderCallback& callback) {
  claimWithRedemptionCode(redemptionCode, customerInfo, std::nullopt, callback);
}

void OrdersManager::claimWithRedemptionCode(const std::string& redemptionCode,
                                            const ClaimOrderInfo& claimOrderInfo,
                                            const std::optional<CustomerConsent>& customerConsent,
                                            const OrderCallback& callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(callback, logRefusal(OrdersManagerErrorType::loadingApiUrl));
  logClaim(redemptionCode);
  CustomerManager& customers = OvintaState::current().customer();
  if (const CustomerPtr customer = customers.current()) {
    return claim(*apiURL, redemptionCode, customer, claimOrderInfo, callback);
  }
  if (!claimOrderInfo.customerName) {
    return refuse(callback, logRefusal(OrdersManagerErrorType::loadingCustomer));
  }
  if (!customerConsent) return refuse(callback, logMissingConsent());
  customers.create(customerInfoOf(claimOrderInfo), *customerConsent,
                   [=, this, apiURL = *apiURL](const CustomerPtr& customer, const ErrorPtr& error) {
                     if (customer && !error) {
                       return claim(apiURL, redemptionCode, customer, claimOrderInfo, callback);
                     }
                     refuse(callback, logRefusal(OrdersManagerErrorType::loadingCustomer));
                   });
}

void OrdersManager::claim(const std::string& apiURL, const std::string& redemptionCode,
                          const CustomerPtr& customer, const ClaimOrderInfo& info,
                          const OrderCallback& callback) {
  OvintaState::current().apiQueue().addOperation(std::make_shared<ClaimOrderWithCodeOperation>(
      apiURL, customer, redemptionCode, info,
      [this, redemptionCode, callback](const OrderPtr& order, const ErrorPtr& error) {
        if (order) {
          reportPermission(*order);
        } else {
          logLine("Got an error claiming order with redemption code " + redemptionCode);
        }
        if (callback) callback(order, error);
      }));
}

}  // namespace ovinta
