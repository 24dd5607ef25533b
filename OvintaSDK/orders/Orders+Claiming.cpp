#include <utility>

#include "OvintaSDK/api/ClaimOrderWithCodeOperation.h"
#include "OvintaSDK/api/GetOrderWithCodeOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/model/RequiredTextAccess.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {

void Orders::logClaim(const std::string& redemptionCode) const {
  context_->log("Claiming order using redemption code " + redemptionCode);
}

void Orders::fetchWithRedemptionCode(const std::string& redemptionCode, OrderCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) {
    const ErrorPtr error = recordRefusal(OrdersManagerErrorType::loadingApiUrl);
    tellError(callback, error);
    return postError(*context_, SDKNotification::ordersError, error);
  }
  context_->log("Getting order using redemption code");
  api->send<GetOrderWithCodeOperation>(
      redemptionCode, [self = shared_from_this(), callback = std::move(callback)](
                          const OrderPtr& order, const ErrorPtr& error) {
        if (!order) self->context_->log("Got an error getting order with redemption code");
        if (callback) callback(order, error);
      });
}

void Orders::claim(const std::string& redemptionCode, const CustomerInfo& customerInfo,
                   std::optional<std::string> pickupType, OrderCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) return tellError(callback, recordRefusal(OrdersManagerErrorType::loadingApiUrl));
  logClaim(redemptionCode);
  const CustomerPtr customer = currentCustomer();
  if (!customer) {
    return tellError(callback, logRefusal(*context_, OrdersManagerErrorType::loadingCustomer));
  }
  claimFor(
      customer, *api, redemptionCode,
      ClaimOrderInfo::withCustomerInfo(
          customerInfo, RequiredTextAccess::of(context_->pushToken.get()), std::move(pickupType)),
      std::move(callback));
}

void Orders::claim(const std::string& redemptionCode, const ClaimOrderInfo& info,
                   const std::optional<CustomerConsent>& consent, OrderCallback callback) {
  const auto refuse = [this, &callback](auto type) {
    tellError(callback, logRefusal(*context_, type));
  };
  const auto api = APIClient::of(context_);
  if (!api) return refuse(OrdersManagerErrorType::loadingApiUrl);
  logClaim(redemptionCode);
  const auto customers = customers_();
  if (const CustomerPtr customer = customers->current()) {
    return claimFor(customer, *api, redemptionCode, info, std::move(callback));
  }
  if (!info.customerName) return refuse(OrdersManagerErrorType::loadingCustomer);
  if (!consent) return refuse(CustomerManagerErrorType::missingCustomerConsent);
  customers->create(
      customerInfoOf(info), *consent,
      [self = shared_from_this(), api = *api, redemptionCode, info, callback = std::move(callback)](
          const CustomerPtr& customer, const ErrorPtr& error) {
        if (customer && !error) {
          return self->claimFor(customer, api, redemptionCode, info, callback);
        }
        tellError(callback, logRefusal(*self->context_, OrdersManagerErrorType::loadingCustomer));
      });
}

void Orders::claimFor(const CustomerPtr& customer, const APIClient& api,
                      const std::string& redemptionCode, const ClaimOrderInfo& info,
                      OrderCallback callback) {
  api.send<ClaimOrderWithCodeOperation>(
      customer, redemptionCode, info,
      [self = shared_from_this(), redemptionCode, callback = std::move(callback)](
          const OrderPtr& order, const ErrorPtr& error) {
        if (order) {
          self->reportPermission(*order);
        } else {
          self->context_->log("Got an error claiming order with redemption code " + redemptionCode);
        }
        if (callback) callback(order, error);
      });
}

}  // namespace ovinta
