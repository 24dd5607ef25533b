#include "OvintaSDK/customer/Customers.h"

#include <utility>

#include "OvintaSDK/api/CreateCustomerOperation.h"
#include "OvintaSDK/api/GetCustomerOperation.h"
#include "OvintaSDK/api/LoginOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/api/RequestPasswordResetOperation.h"
#include "OvintaSDK/api/SetNewPasswordOperation.h"
#include "OvintaSDK/api/SignUpOperation.h"
#include "OvintaSDK/api/UpdateCustomerOperation.h"
#include "OvintaSDK/customer/StoredCustomer.h"

namespace ovinta {

Customers::Customers(ContextPtr context)
    : context_(std::move(context)), current_(loadStoredCustomer(*context_->services().settings)) {}

void Customers::refuse(CustomerManagerErrorType type, const CustomerCallback& callback) const {
  tellError(callback, logRefusal(*context_, type));
}

template <class Operation, class... Inputs>
void Customers::send(CustomerCallback callback, Inputs&&... inputs) {
  const auto api = APIClient::of(context_);
  if (!api) return refuse(CustomerManagerErrorType::loadingApiUrl, callback);
  api->send<Operation>(std::forward<Inputs>(inputs)..., keeping(std::move(callback)));
}

template <class Operation, class... Inputs>
void Customers::sendForCurrent(CustomerCallback callback, Inputs&&... inputs) {
  const CustomerPtr customer = current();
  if (!customer) return refuse(CustomerManagerErrorType::loadingCustomer, callback);
  send<Operation>(std::move(callback), customer, std::forward<Inputs>(inputs)...);
}

CustomerCallback Customers::keeping(CustomerCallback callback) {
  return [self = shared_from_this(), callback = std::move(callback)](const CustomerPtr& customer,
                                                                     const ErrorPtr& error) {
    if (customer && !error) {
      storeCustomer(*customer, *self->context_->services().settings);
      self->setCurrent(customer);
    }
    if (callback) callback(customer, error);
  };
}

void Customers::create(const CustomerInfo& info, const CustomerConsent& consent,
                       CustomerCallback callback) {
  send<CreateCustomerOperation>(
      std::move(callback), CreateCustomerInfo{.customerInfo = info, .customerConsent = consent});
}

void Customers::update(const CustomerInfo& info, CustomerCallback callback) {
  sendForCurrent<UpdateCustomerOperation>(std::move(callback), info);
}

void Customers::login(std::string emailAddress, std::string password, CustomerCallback callback) {
  send<LoginOperation>(std::move(callback), std::move(emailAddress), std::move(password));
}

void Customers::loginWithToken(std::string token, CustomerCallback callback) {
  send<GetCustomerOperation>(std::move(callback), std::move(token));
}

void Customers::signUp(std::string emailAddress, const std::string& password,
                       CustomerCallback callback) {
  sendForCurrent<SignUpOperation>(std::move(callback),
                                  SignUpInfo{.emailAddress = std::move(emailAddress),
                                             .password = password,
                                             .passwordConfirmation = password});
}

void Customers::requestNewPassword(std::string emailAddress, ErrorCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) {
    return tellError(callback, logRefusal(*context_, CustomerManagerErrorType::loadingApiUrl));
  }
  api->send<RequestPasswordResetOperation>(
      std::move(emailAddress),
      [callback = std::move(callback)](std::monostate, const ErrorPtr& error) {
        if (callback) callback(error);
      });
}

void Customers::setNewPassword(SetNewPassword newPassword, CustomerCallback callback) {
  send<SetNewPasswordOperation>(std::move(callback), std::move(newPassword));
}

void Customers::logout() {
  forgetStoredToken(*context_->services().settings);
  setCurrent(nullptr);
}

}  // namespace ovinta
