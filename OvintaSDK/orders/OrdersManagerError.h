#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

/// Why a request is refused: there is no current customer, and none could be made; no base URL is
/// stored; another fetch is under way.
enum class OVINTA_EXPORT OrdersManagerErrorType { loadingCustomer, loadingApiUrl, alreadyFetching };

template <>
struct ManagerErrorTable<OrdersManagerErrorType> {
  static constexpr std::string_view kContext = "OrdersManager";
  static constexpr ManagerErrorRow<OrdersManagerErrorType> kRows[] = {
      {OrdersManagerErrorType::loadingCustomer, "Could not load customer"},
      {OrdersManagerErrorType::loadingApiUrl, "Could not load API url"},
      {OrdersManagerErrorType::alreadyFetching, "Already fetching orders"},
  };
};

/// The orders manager refused a request: "Could not load customer", "Could not load API url" or
/// "Already fetching orders".
using OrdersManagerError = ManagerError<OrdersManagerErrorType>;

extern template class ManagerError<OrdersManagerErrorType>;

}  // namespace ovinta
