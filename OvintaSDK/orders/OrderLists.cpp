#include "OvintaSDK/orders/OrderLists.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ovinta {

OrderList closedOrders(const OrderList& orders) {
  // The dates are read once: another thread may change them while the orders are sorted.
  std::vector<std::pair<platform::Date, OrderPtr>> dated;
  for (const OrderPtr& order : orders) {
    if (!order->isOpen()) {
      dated.emplace_back(order->updatedAt().value_or(platform::Date{}), order);
    }
  }
  std::ranges::stable_sort(dated, std::ranges::greater{},
                           &std::pair<platform::Date, OrderPtr>::first);
  OrderList closed;
  for (auto& [date, order] : dated) closed.push_back(std::move(order));
  return closed;
}

}  // namespace ovinta
