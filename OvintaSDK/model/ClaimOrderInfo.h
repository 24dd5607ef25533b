#pragma once

#include <optional>
#include <string>

#include "OvintaSDK/model/CustomerInfo.h"
#include "platform/Export.h"

namespace ovinta {

/// What a customer claims an order with. The push token is always sent, as null when absent; other
/// absent fields are not sent.
struct OVINTA_EXPORT ClaimOrderInfo {
  std::optional<std::string> customerCarColor = {};
  std::optional<std::string> customerCarType = {};
  std::optional<std::string> customerLicensePlate = {};
  std::optional<std::string> customerName = {};
  std::optional<std::string> customerPhone = {};
  std::optional<std::string> pushToken = {};
  std::optional<std::string> pickupType = {};

  /// A claim with the customer fields copied from `customerInfo`. May be called from any thread.
  static ClaimOrderInfo withCustomerInfo(const CustomerInfo& customerInfo,
                                         std::optional<std::string> pushToken,
                                         std::optional<std::string> pickupType);

  friend bool operator==(const ClaimOrderInfo&, const ClaimOrderInfo&) = default;
};

}  // namespace ovinta
