#pragma once

#include <string_view>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/Export.h"

namespace ovinta {

enum class CustomerManagerErrorType { loadingApiUrl, loadingCustomer, missingCustomerConsent };

/// The message of errors of that type.
OVINTA_EXPORT std::string_view rawValue(CustomerManagerErrorType type);

/// The customer manager, or the orders manager on its behalf, refused a request before sending it.
class OVINTA_EXPORT CustomerManagerError : public OvintaError {
 public:
  explicit CustomerManagerError(CustomerManagerErrorType type);
  ~CustomerManagerError() override;

  CustomerManagerErrorType type() const { return type_; }

 private:
  CustomerManagerErrorType type_;
};

}  // namespace ovinta
