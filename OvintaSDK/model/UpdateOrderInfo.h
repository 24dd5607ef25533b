#pragma once

#include "OvintaSDK/model/RequiredText.h"

namespace ovinta {

/// Sets the push token of an order, without which it cannot be built. A plain value.
struct UpdateOrderInfo {
  /// The device's push token, as `Ovinta::pushToken`.
  RequiredText pushToken;

  friend bool operator==(const UpdateOrderInfo&, const UpdateOrderInfo&) = default;
};

}  // namespace ovinta
