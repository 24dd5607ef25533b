#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/model/CustomerInfo.h"
#include "OvintaSDK/model/OrderState.h"
#include "OvintaSDK/model/PickupWindow.h"

namespace ovinta {

/// What an order is created from. Absent fields are not sent. No value is checked: the service
/// judges them. A plain value.
struct OVINTA_EXPORT CreateOrderInfo {
  /// The site where it is to be picked up, a `Site::id`.
  std::int64_t siteID = 0;
  /// The application's own identifier of the order.
  std::string partnerIdentifier;
  /// The customer's details, in words for the people at the site.
  std::optional<std::string> customerCarColor = {};
  std::optional<std::string> customerCarType = {};
  std::optional<std::string> customerLicensePlate = {};
  std::optional<std::string> customerName = {};
  std::optional<std::string> customerPhone = {};
  /// The device's push token, as `Ovinta::pushToken`.
  std::optional<std::string> pushToken = {};
  /// The state to begin with; without one the service chooses.
  std::optional<OrderState> state = {};
  /// When it is to be picked up.
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
