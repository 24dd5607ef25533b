#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

/// Why a request is refused: no base URL is stored; there is no current customer to update or sign
/// up; a claim that would have to create the customer comes without consent.
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

/// The customer manager, or the orders manager on its behalf, refused a request: "Could not load
/// API url", "Could not load customer" or "Missing customer consent".
using CustomerManagerError = ManagerError<CustomerManagerErrorType>;

extern template class ManagerError<CustomerManagerErrorType>;

}  // namespace ovinta
