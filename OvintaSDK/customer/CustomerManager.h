#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "../../platform/Export.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/customer/CustomerManagerError.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

class Customers;
class Library;

/// Receives the customer or the error, exactly one of them not null.
using CustomerCallback = std::function<void(CustomerPtr, ErrorPtr)>;

/// Receives the error, or null after a success.
using ErrorCallback = std::function<void(ErrorPtr)>;

/// Owns the one customer of the device; reached as `Ovinta::customer()`. The customer survives a
/// restart of the application. All methods may be called from any thread and return at once; a
/// callback, which may be empty and must not throw, is called at most once, with no lock held: on
/// the callback thread of the URL session when the service was asked, on a thread of the API queue
/// when the stored base URL is no URL, inside the call when the request was refused before. It is
/// left out only where the application's own `platform::URLSession` completes a success without
/// data; that of Linux gives every complete answer its data, even if empty. "The service's errors"
/// are those of a request (see `OvintaError`). Of two requests that overlap, the one that is
/// answered last decides who the customer is. It may be destroyed while its requests are under way:
/// they end as they would have.
class OVINTA_EXPORT CustomerManager {
 public:
  /// One of the application's own, which loads `current` from the settings store; from then on its
  /// `current` is another variable than that of `Ovinta::customer()`.
  CustomerManager();
  ~CustomerManager();
  CustomerManager(const CustomerManager&) = delete;
  CustomerManager& operator=(const CustomerManager&) = delete;

  /// The signed-in customer, or null. After a start it is the one whose name, vehicle type and
  /// colour, licence plate and token the settings store holds.
  CustomerPtr current() const;
  /// Changes the copy in memory only; null for nobody.
  void setCurrent(CustomerPtr customer);

  /// Creates an anonymous customer, which becomes `current` and is kept in the settings store. On
  /// failure nothing changes. The service judges the consent. Errors: `CustomerManagerError` of
  /// type `loadingApiUrl`; the service's.
  void create(const CustomerInfo& info, bool termsOfService, bool ageVerification,
              CustomerCallback callback = {});
  void create(const CustomerInfo& info, const CustomerConsent& customerConsent,
              CustomerCallback callback = {});

  /// Changes the current customer's details. Errors: `CustomerManagerError` of type
  /// `loadingCustomer` or `loadingApiUrl`; the service's. A customer that comes back becomes
  /// `current` and is kept, here as in all that follow; on failure nothing changes.
  void update(const CustomerInfo& info, CustomerCallback callback = {});

  /// Logs in. Errors: `CustomerManagerError` of type `loadingApiUrl`; the service's.
  void login(std::string emailAddress, std::string password, CustomerCallback callback = {});
  /// Logs in with the `Customer::token` of an earlier session; otherwise the same.
  void loginWithToken(std::string token, CustomerCallback callback = {});

  /// Gives the current customer's account an e-mail address and a password. Errors as `update`.
  void signUp(std::string emailAddress, const std::string& password,
              CustomerCallback callback = {});

  /// Has a message with a reset token sent to the address. Changes nothing here. Errors as `login`.
  void requestNewPassword(std::string emailAddress, ErrorCallback callback = {});

  /// Sets a new password with a reset token, and logs in. Password and confirmation are sent as
  /// given: the service compares them. Errors as `login`.
  void setNewPassword(std::string resetPasswordToken, std::string password,
                      std::string confrimation, CustomerCallback callback = {});

  /// Forgets the customer, and wipes the token from the settings store; the service is not told.
  /// Name, vehicle, e-mail address and phone stay there, to prefill a later login.
  void logout();
  /// The same as `logout`.
  void signOut();

 private:
  friend class Library;
  explicit CustomerManager(std::shared_ptr<Customers> customers)
      : customers_(std::move(customers)) {}

  const std::shared_ptr<Customers> customers_;
};

}  // namespace ovinta
