#pragma once

#include "OvintaSDK/model/RequiredText.h"

namespace ovinta {

/// Sets the push token of an order, without which it cannot be built.
struct UpdateOrderInfo {
  RequiredText pushToken;

  friend bool operator==(const UpdateOrderInfo&, const UpdateOrderInfo&) = default;
};

}  // namespace ovinta
