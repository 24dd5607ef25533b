#pragma once

#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// The orders of the list that are not open, most recently updated first; without a date of update
/// an order counts as updated in 1970.
OrderList closedOrders(const OrderList& orders);

}  // namespace ovinta
