#include <utility>

#include "OvintaSDK/api/CreateOrderOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {

void Orders::create(std::int64_t siteID, std::string partnerIdentifier,
                    const CustomerInfo& customerInfo, std::optional<PickupWindow> pickupWindow,
                    std::optional<OrderState> state, OrderCallback callback) {
  create(CreateOrderInfo::withCustomerInfo(siteID, std::move(partnerIdentifier), customerInfo,
                                           context_->pushToken.get(), state, pickupWindow),
         std::move(callback));
}

void Orders::create(const CreateOrderInfo& info, OrderCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) return tellError(callback, recordRefusal(OrdersManagerErrorType::loadingApiUrl));
  if (const CustomerPtr customer = currentCustomer()) {
    context_->log("Creating order for existing customer");
    createOrder(*api, customer, info, std::move(callback));
  } else if (!info.customerName) {
    tellError(callback, recordRefusal(OrdersManagerErrorType::loadingCustomer));
  } else {
    createCustomer(*api, info, std::move(callback));
  }
}

void Orders::createCustomer(const APIClient& api, const CreateOrderInfo& info,
                            OrderCallback callback) {
  // Ordering for a new customer counts as consent to both.
  const CustomerConsent consent{.termsOfService = true, .ageVerification = true};
  customers_()->create(customerInfoOf(info), consent,
                       [self = shared_from_this(), api, info, callback = std::move(callback)](
                           const CustomerPtr& customer, const ErrorPtr& error) {
                         if (customer && !error)
                           return self->createOrder(api, customer, info, callback);
                         tellError(callback,
                                   self->recordRefusal(OrdersManagerErrorType::loadingCustomer));
                       });
}

void Orders::createOrder(const APIClient& api, const CustomerPtr& customer,
                         const CreateOrderInfo& info, OrderCallback callback) {
  api.send<CreateOrderOperation>(customer, info,
                                 [self = shared_from_this(), callback = std::move(callback)](
                                     const OrderPtr& order, const ErrorPtr& error) {
                                   if (order) self->reportPermission(*order);
                                   if (callback) callback(order, error);
                                 });
}

void Orders::reportPermission(const Order& order) {
  const auto status =
      stateFromRawValue<LocationAuthStatus>(context_->services().location->authorizationStatus());
  if (status) event(OrderEvent::permissionUpdate(order.id, *status));
}

}  // namespace ovinta
