#pragma once

#include <functional>
#include <memory>

#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/customer/CustomerManagerError.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/CustomerInfo.h"
#include "platform/Export.h"

namespace ovinta {

using CustomerPtr = std::shared_ptr<const Customer>;

/// Receives the customer or the error, exactly one of them not null.
using CustomerCallback = std::function<void(CustomerPtr, ErrorPtr)>;

/// Owns the one customer of the device; reached as `Ovinta::customer()`. The customer survives a
/// restart of the application. All methods may be called from any thread and return at once; a
/// callback, which may be empty, is called exactly once: on the network's callback thread when the
/// service was asked, inside the call when the request was refused before it was sent.
class OVINTA_EXPORT CustomerManager {
 public:
  /// Loads `current` from the settings store.
  CustomerManager();
  CustomerManager(const CustomerManager&) = delete;
  CustomerManager& operator=(const CustomerManager&) = delete;

  /// The signed-in customer, or null.
  CustomerPtr current() const { return current_.get(); }
  /// Changes the copy in memory only.
  void setCurrent(CustomerPtr customer) { current_.set(std::move(customer)); }

  /// Creates an anonymous customer, which becomes `current` and is kept in the settings store. On
  /// failure nothing changes. Errors: `CustomerManagerError` of type `loadingApiUrl`; those of the
  /// service.
  void create(const CustomerInfo& info, bool termsOfService, bool ageVerification,
              CustomerCallback callback = {});
  void create(const CustomerInfo& info, const CustomerConsent& customerConsent,
              CustomerCallback callback = {});

  /// Forgets the customer. Name and vehicle stay in the settings store, to prefill a later login.
  void logout();
  /// The same as `logout`.
  void signOut();

 private:
  /// Keeps a customer that came from the service, then reports.
  CustomerCallback keeping(CustomerCallback callback);

  Guarded<CustomerPtr> current_;
};

}  // namespace ovinta
