#include "OvintaSDK/orders/OrderLists.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace ovinta {
namespace {

bool isStillOpen(const OrderPtr& order) { return order->isOpen(); }

}  // namespace

OrderList openOrders(const OrderList& orders) {
  OrderList open;
  std::ranges::copy_if(orders, std::back_inserter(open), isStillOpen);
  return open;
}

OrderList closedOrders(const OrderList& orders) {
  // The dates are read once: another thread may change them while the orders are sorted.
  std::vector<std::pair<platform::Date, OrderPtr>> dated;
  for (const OrderPtr& order : orders) {
    if (!isStillOpen(order))
      dated.emplace_back(order->updatedAt().value_or(platform::Date{}), order);
  }
  std::ranges::stable_sort(dated, std::ranges::greater{},
                           &std::pair<platform::Date, OrderPtr>::first);
  OrderList closed;
  for (auto& [date, order] : dated) closed.push_back(std::move(order));
  return closed;
}

OrderPtr findOrder(const std::optional<OrderList>& orders, std::int64_t id) {
  if (!orders) return nullptr;
  const auto found =
      std::ranges::find(*orders, id, [](const OrderPtr& order) { return order->id; });
  return found == orders->end() ? nullptr : *found;
}

}  // namespace ovinta
