#include "OvintaSDK/customer/CustomerManager.h"

#include "OvintaSDK/api/CreateCustomerOperation.h"
#include "OvintaSDK/api/GetCustomerOperation.h"
#include "OvintaSDK/api/LoginOperation.h"
#include "OvintaSDK/api/RequestPasswordResetOperation.h"
#include "OvintaSDK/api/SetNewPasswordOperation.h"
#include "OvintaSDK/api/SignUpOperation.h"
#include "OvintaSDK/api/UpdateCustomerOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/StoredCustomer.h"

namespace ovinta {
namespace {

ErrorPtr refusal(CustomerManagerErrorType type) {
  auto error = std::make_shared<const CustomerManagerError>(type);
  logLine(error->localizedDescription());
  return error;
}

void refuse(CustomerManagerErrorType type, const CustomerCallback& callback) {
  const ErrorPtr error = refusal(type);
  if (callback) callback(nullptr, error);
}

/// Sends the operation to the service, or refuses.
template <class Operation, class... Inputs>
void send(CustomerCallback callback, Inputs&&... inputs) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(CustomerManagerErrorType::loadingApiUrl, callback);
  OvintaState::current().apiQueue().addOperation(
      std::make_shared<Operation>(*apiURL, std::forward<Inputs>(inputs)..., std::move(callback)));
}

/// The same for an operation in the customer's name.
template <class Operation, class... Inputs>
void sendFor(const CustomerPtr& customer, CustomerCallback callback, Inputs&&... inputs) {
  if (!customer) return refuse(CustomerManagerErrorType::loadingCustomer, callback);
  send<Operation>(std::move(callback), customer, std::forward<Inputs>(inputs)...);
}

}  // namespace

CustomerManager::CustomerManager() : current_(loadStoredCustomer()) {}

void CustomerManager::create(const CustomerInfo& info, bool termsOfService, bool ageVerification,
                             CustomerCallback callback) {
  create(info, {.termsOfService = termsOfService, .ageVerification = ageVerification},
         std::move(callback));
}

void CustomerManager::create(const CustomerInfo& info, const CustomerConsent& customerConsent,
                             CustomerCallback callback) {
  send<CreateCustomerOperation>(
      keeping(std::move(callback)),
      CreateCustomerInfo{.customerInfo = info, .customerConsent = customerConsent});
}

void CustomerManager::update(const CustomerInfo& info, CustomerCallback callback) {
  sendFor<UpdateCustomerOperation>(current(), keeping(std::move(callback)), info);
}

void CustomerManager::login(std::string emailAddress, std::string password,
                            CustomerCallback callback) {
  send<LoginOperation>(keeping(std::move(callback)), std::move(emailAddress), std::move(password));
}

void CustomerManager::loginWithToken(std::string token, CustomerCallback callback) {
  send<GetCustomerOperation>(keeping(std::move(callback)), std::move(token));
}

void CustomerManager::signUp(std::string emailAddress, const std::string& password,
                             CustomerCallback callback) {
  sendFor<SignUpOperation>(current(), keeping(std::move(callback)),
                           SignUpInfo{.emailAddress = std::move(emailAddress),
                                      .password = password,
                                      .passwordConfirmation = password});
}

void CustomerManager::requestNewPassword(std::string emailAddress, ErrorCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) {
    const ErrorPtr error = refusal(CustomerManagerErrorType::loadingApiUrl);
    if (callback) callback(error);
    return;
  }
  OvintaState::current().apiQueue().addOperation(std::make_shared<RequestPasswordResetOperation>(
      *apiURL, std::move(emailAddress),
      [callback = std::move(callback)](std::monostate, const ErrorPtr& error) {
        if (callback) callback(error);
      }));
}

void CustomerManager::setNewPassword(std::string resetPasswordToken, std::string password,
                                     std::string confrimation, CustomerCallback callback) {
  send<SetNewPasswordOperation>(keeping(std::move(callback)),
                                SetNewPassword{.resetPasswordToken = std::move(resetPasswordToken),
                                               .password = std::move(password),
                                               .confirmation = std::move(confrimation)});
}

void CustomerManager::logout() {
  forgetStoredToken();
  setCurrent(nullptr);
}

void CustomerManager::signOut() { logout(); }

CustomerCallback CustomerManager::keeping(CustomerCallback callback) {
  return
      [this, callback = std::move(callback)](const CustomerPtr& customer, const ErrorPtr& error) {
        if (customer && !error) {
          storeCustomer(*customer);
          setCurrent(customer);
        }
        if (callback) callback(customer, error);
      };
}

}  // namespace ovinta
