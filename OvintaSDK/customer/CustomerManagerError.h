#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

enum class OVINTA_EXPORT CustomerManagerErrorType {
  loadingApiUrl,
  loadingCustomer,
  missingCustomerConsent
};

template <>
struct ManagerErrorTable<CustomerManagerErrorType> {
  static constexpr std::string_view kContext = "CustomerManager";
  static constexpr ManagerErrorRow<CustomerManagerErrorType> kRows[] = {
      {CustomerManagerErrorType::loadingApiUrl, "Could not load API url"},
      {CustomerManagerErrorType::loadingCustomer, "Could not load customer"},
      {CustomerManagerErrorType::missingCustomerConsent, "Missing customer consent"},
  };
};

/// The customer manager, or the orders manager on its behalf, refused a request.
using CustomerManagerError = ManagerError<CustomerManagerErrorType>;

extern template class ManagerError<CustomerManagerErrorType>;

}  // namespace ovinta
