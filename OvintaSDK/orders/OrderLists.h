#pragma once

#include <cstdint>
#include <optional>

#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// The open orders of the list, in its order.
OrderList openOrders(const OrderList& orders);

/// The orders of the list that are not open, most recently updated first; without a date of update
/// an order counts as updated in 1970.
OrderList closedOrders(const OrderList& orders);

/// The first order with that identifier, or null.
OrderPtr findOrder(const std::optional<OrderList>& orders, std::int64_t id);

}  // namespace ovinta
