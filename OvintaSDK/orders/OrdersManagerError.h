#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

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

/// The orders manager refused a request.
using OrdersManagerError = ManagerError<OrdersManagerErrorType>;

extern template class ManagerError<OrdersManagerErrorType>;

}  // namespace ovinta
