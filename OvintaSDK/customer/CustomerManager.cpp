#include "OvintaSDK/customer/CustomerManager.h"

#include <utility>

#include "OvintaSDK/customer/Customers.h"

namespace ovinta {

template class ManagerError<CustomerManagerErrorType>;

CustomerManager::~CustomerManager() = default;

CustomerPtr CustomerManager::current() const { return customers_->current(); }

void CustomerManager::setCurrent(CustomerPtr customer) {
  customers_->setCurrent(std::move(customer));
}

void CustomerManager::create(const CustomerInfo& info, bool termsOfService, bool ageVerification,
                             CustomerCallback callback) {
  create(info, {.termsOfService = termsOfService, .ageVerification = ageVerification},
         std::move(callback));
}

void CustomerManager::create(const CustomerInfo& info, const CustomerConsent& customerConsent,
                             CustomerCallback callback) {
  customers_->create(info, customerConsent, std::move(callback));
}

void CustomerManager::update(const CustomerInfo& info, CustomerCallback callback) {
  customers_->update(info, std::move(callback));
}

void CustomerManager::login(std::string emailAddress, std::string password,
                            CustomerCallback callback) {
  customers_->login(std::move(emailAddress), std::move(password), std::move(callback));
}

void CustomerManager::loginWithToken(std::string token, CustomerCallback callback) {
  customers_->loginWithToken(std::move(token), std::move(callback));
}

void CustomerManager::signUp(std::string emailAddress, const std::string& password,
                             CustomerCallback callback) {
  customers_->signUp(std::move(emailAddress), password, std::move(callback));
}

void CustomerManager::requestNewPassword(std::string emailAddress, ErrorCallback callback) {
  customers_->requestNewPassword(std::move(emailAddress), std::move(callback));
}

void CustomerManager::setNewPassword(std::string resetPasswordToken, std::string password,
                                     std::string confrimation, CustomerCallback callback) {
  customers_->setNewPassword({.resetPasswordToken = std::move(resetPasswordToken),
                              .password = std::move(password),
                              .confirmation = std::move(confrimation)},
                             std::move(callback));
}

void CustomerManager::logout() { customers_->logout(); }

void CustomerManager::signOut() { logout(); }

}  // namespace ovinta
