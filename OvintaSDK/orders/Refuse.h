#pragma once

#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {

/// Reports the error, if anybody wants to know.
inline void refuse(const OrderCallback& callback, const ErrorPtr& error) {
  if (callback) callback(nullptr, error);
}

}  // namespace ovinta
