#pragma once

#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// What the service answers with one order; it is read, never written. A plain value.
struct OrderResponse {
  /// Not null in an answer that could be read.
  OrderPtr data;
};

/// What the service answers with several orders; it is read, never written. A plain value.
struct OrdersResponse {
  /// In the service's order, without nulls.
  OrderList data;
};

}  // namespace ovinta
