#pragma once

#include <optional>
#include <string>

#include "../../platform/Date.h"
#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/OrderState.h"

namespace ovinta {

/// What changes in an order while it is carried out. What the service left out is absent. A plain
/// value: that of an order is a copy.
struct OrderProgress {
  /// Where the store and where the customer stands.
  OrderState state = OrderState::created;
  CustomerState customerState = CustomerState::created;
  /// The customer's rating as text; the service takes it as a number and gives it back as text.
  std::optional<std::string> customerRating;
  /// What the customer said with the rating.
  std::optional<std::string> customerComment;
  /// How the order is to be picked up, as `ClaimOrderInfo::pickupType`.
  std::optional<std::string> pickupType;
  /// When the customer is expected.
  std::optional<platform::Date> etaAt;
  /// When the order was made, ended and last changed at the service.
  std::optional<platform::Date> createdAt;
  std::optional<platform::Date> completedAt;
  std::optional<platform::Date> updatedAt;
  /// The push token to which the service sends the order's pushes.
  std::optional<std::string> pushToken;
};

}  // namespace ovinta
