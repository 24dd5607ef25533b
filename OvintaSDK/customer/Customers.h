#pragma once

#include <memory>

#include "OvintaSDK/api/APIClient.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/model/SetNewPassword.h"

namespace ovinta {

/// What a `CustomerManager` and its requests in flight share, with all that it does.
class Customers : public std::enable_shared_from_this<Customers> {
 public:
  /// Loads the customer from the settings store.
  explicit Customers(ContextPtr context);

  CustomerPtr current() const { return current_.get(); }
  void setCurrent(CustomerPtr customer) { current_.set(std::move(customer)); }

  void create(const CustomerInfo& info, const CustomerConsent& consent, CustomerCallback callback);
  void update(const CustomerInfo& info, CustomerCallback callback);
  void login(std::string emailAddress, std::string password, CustomerCallback callback);
  void loginWithToken(std::string token, CustomerCallback callback);
  void signUp(std::string emailAddress, const std::string& password, CustomerCallback callback);
  void requestNewPassword(std::string emailAddress, ErrorCallback callback);
  void setNewPassword(SetNewPassword newPassword, CustomerCallback callback);
  void logout();

 private:
  /// Sends an operation to the service; refuses when no base URL is stored.
  template <class Operation, class... Inputs>
  void send(CustomerCallback callback, Inputs&&... inputs);
  /// Sends an operation in the current customer's name to the service; refuses when there is no
  /// customer or no base URL is stored.
  template <class Operation, class... Inputs>
  void sendForCurrent(CustomerCallback callback, Inputs&&... inputs);
  /// A callback that keeps the customer that came from the service, and then calls `callback`.
  CustomerCallback keeping(CustomerCallback callback);
  void refuse(CustomerManagerErrorType type, const CustomerCallback& callback) const;

  const ContextPtr context_;
  Guarded<CustomerPtr> current_;
};

}  // namespace ovinta
