#pragma once

#include <string_view>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/Export.h"

namespace ovinta {

enum class OrdersManagerErrorType { loadingCustomer, loadingApiUrl, alreadyFetching };

/// The message of errors of that type.
OVINTA_EXPORT std::string_view rawValue(OrdersManagerErrorType type);

/// The orders manager refused a request before sending it.
class OVINTA_EXPORT OrdersManagerError : public OvintaError {
 public:
  explicit OrdersManagerError(OrdersManagerErrorType type);
  ~OrdersManagerError() override;

  OrdersManagerErrorType type() const { return type_; }

 private:
  OrdersManagerErrorType type_;
};

}  // namespace ovinta
