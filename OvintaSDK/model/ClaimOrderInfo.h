#pragma once

#include <optional>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/model/CustomerInfo.h"
#include "OvintaSDK/model/RequiredText.h"

namespace ovinta {

/// What a customer claims an order with. It cannot be built without a push token, which is always
/// sent: as null by a claim that was read without one. Other absent fields are not sent. No value
/// is checked: the service judges them. A plain value.
struct OVINTA_EXPORT ClaimOrderInfo {
  /// The customer's details, in words for the people at the site.
  std::optional<std::string> customerCarColor = {};
  std::optional<std::string> customerCarType = {};
  std::optional<std::string> customerLicensePlate = {};
  std::optional<std::string> customerName = {};
  std::optional<std::string> customerPhone = {};
  /// The device's push token, as `Ovinta::pushToken`.
  RequiredText pushToken;
  /// How the order is to be picked up; sent as it is.
  std::optional<std::string> pickupType = {};

  /// A claim with the customer fields copied from `customerInfo`. May be called from any thread.
  static ClaimOrderInfo withCustomerInfo(const CustomerInfo& customerInfo, RequiredText pushToken,
                                         std::optional<std::string> pickupType);

  friend bool operator==(const ClaimOrderInfo&, const ClaimOrderInfo&) = default;
};

}  // namespace ovinta
