#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/model/CustomerInfo.h"
#include "OvintaSDK/model/OrderState.h"
#include "OvintaSDK/model/PickupWindow.h"

namespace ovinta {

/// What an order is created from. Absent fields are not sent; without a state the service chooses.
struct OVINTA_EXPORT CreateOrderInfo {
  std::int64_t siteID = 0;
  std::string partnerIdentifier;
  std::optional<std::string> customerCarColor = {};
  std::optional<std::string> customerCarType = {};
  std::optional<std::string> customerLicensePlate = {};
  std::optional<std::string> customerName = {};
  std::optional<std::string> customerPhone = {};
  std::optional<std::string> pushToken = {};
  std::optional<OrderState> state = {};
  std::optional<PickupWindow> pickupWindow = {};

  /// The same with the customer fields copied from `customerInfo`. May be called from any thread.
  static CreateOrderInfo withCustomerInfo(std::int64_t siteID, std::string partnerIdentifier,
                                          const CustomerInfo& customerInfo,
                                          std::optional<std::string> pushToken,
                                          std::optional<OrderState> state,
                                          std::optional<PickupWindow> pickupWindow);

  friend bool operator==(const CreateOrderInfo&, const CreateOrderInfo&) = default;
};

}  // namespace ovinta
