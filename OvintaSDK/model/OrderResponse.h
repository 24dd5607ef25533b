#pragma once

#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// What the service answers with one order. Only read.
struct OrderResponse {
  OrderPtr data;
};

/// What the service answers with several. Only read.
struct OrdersResponse {
  OrderList data;
};

}  // namespace ovinta
