#pragma once

#include <functional>
#include <memory>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/customer/CustomerManagerError.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

class Customers;

/// Receives the customer or the error, exactly one of them not null.
using CustomerCallback = std::function<void(CustomerPtr, ErrorPtr)>;

/// Receives the error, or null.
using ErrorCallback = std::function<void(ErrorPtr)>;

/// Owns the one customer of the device; reached as `Ovinta::customer()`. The customer survives a
/// restart of the application. All methods may be called from any thread and return at once; a
/// callback, which may be empty and must not throw, is called at most once: on the network's
/// callback thread when the service was asked, on a thread of the API queue when the base URL is
/// none, inside the call when the request was refused before. It is left out only where the
/// application's own `platform::URLSession` completes a success without data; that of Linux gives
/// every complete answer its data, even if empty.
/// It may be destroyed while its requests are under way: they end as they would have.
class OVINTA_EXPORT CustomerManager {
 public:
  /// Loads `current` from the settings store.
  CustomerManager();
  /// For the library's own use.
  explicit CustomerManager(std::shared_ptr<Customers> customers);
  ~CustomerManager();
  CustomerManager(const CustomerManager&) = delete;
  CustomerManager& operator=(const CustomerManager&) = delete;

  /// The signed-in customer, or null.
  CustomerPtr current() const;
  /// Changes the copy in memory only.
  void setCurrent(CustomerPtr customer);

  /// Creates an anonymous customer, which becomes `current` and is kept in the settings store. On
  /// failure nothing changes. Errors: `CustomerManagerError` of type `loadingApiUrl`; those of the
  /// service.
  void create(const CustomerInfo& info, bool termsOfService, bool ageVerification,
              CustomerCallback callback = {});
  void create(const CustomerInfo& info, const CustomerConsent& customerConsent,
              CustomerCallback callback = {});

  /// Changes the current customer's details. Errors: `CustomerManagerError` of type
  /// `loadingCustomer` or `loadingApiUrl`; those of the service. A customer that comes back becomes
  /// `current` and is kept, here as in all that follow; on failure nothing changes.
  void update(const CustomerInfo& info, CustomerCallback callback = {});

  /// Logs in. Errors: `CustomerManagerError` of type `loadingApiUrl`; those of the service.
  void login(std::string emailAddress, std::string password, CustomerCallback callback = {});
  /// Logs in with the token of an earlier session; otherwise the same.
  void loginWithToken(std::string token, CustomerCallback callback = {});

  /// Gives the current customer's account an e-mail address and a password. Errors as `update`.
  void signUp(std::string emailAddress, const std::string& password,
              CustomerCallback callback = {});

  /// Has a message with a reset token sent. The error, or null, is reported. Errors as `login`.
  void requestNewPassword(std::string emailAddress, ErrorCallback callback = {});

  /// Sets a new password with a reset token, and logs in. Password and confirmation are sent as
  /// given: the service compares them. Errors as `login`.
  void setNewPassword(std::string resetPasswordToken, std::string password,
                      std::string confrimation, CustomerCallback callback = {});

  /// Forgets the customer. Name and vehicle stay in the settings store, to prefill a later login.
  void logout();
  /// The same as `logout`.
  void signOut();

 private:
  const std::shared_ptr<Customers> customers_;
};

}  // namespace ovinta
