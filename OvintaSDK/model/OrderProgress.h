#pragma once

#include <optional>
#include <string>

#include "../../platform/Date.h"
#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/OrderState.h"

namespace ovinta {

/// What changes in an order while it is carried out.
struct OrderProgress {
  OrderState state = OrderState::created;
  CustomerState customerState = CustomerState::created;
  /// The customer's rating as text; the service takes it as a number and gives it back as text.
  std::optional<std::string> customerRating;
  std::optional<std::string> customerComment;
  std::optional<std::string> pickupType;
  std::optional<platform::Date> etaAt;
  std::optional<platform::Date> createdAt;
  std::optional<platform::Date> completedAt;
  std::optional<platform::Date> updatedAt;
  std::optional<std::string> pushToken;
};

}  // namespace ovinta
