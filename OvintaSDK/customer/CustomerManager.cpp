#include "OvintaSDK/customer/CustomerManager.h"

#include "OvintaSDK/api/CreateCustomerOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/StoredCustomer.h"

namespace ovinta {
namespace {

void refuse(CustomerManagerErrorType type, const CustomerCallback& callback) {
  const auto error = std::make_shared<const CustomerManagerError>(type);
  logLine(error->localizedDescription());
  if (callback) callback(nullptr, error);
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
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(CustomerManagerErrorType::loadingApiUrl, callback);
  OvintaState::current().apiQueue().addOperation(std::make_shared<CreateCustomerOperation>(
      *apiURL, CreateCustomerInfo{.customerInfo = info, .customerConsent = customerConsent},
      keeping(std::move(callback))));
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
