#include "OvintaSDK/orders/OrderLists.h"

#include <algorithm>
#include <iterator>

namespace ovinta {
namespace {

platform::Date updateDate(const OrderPtr& order) {
  return order->updatedAt().value_or(platform::Date{});
}

}  // namespace

OrderList openOrders(const OrderList& orders) {
  OrderList open;
  std::ranges::copy_if(orders, std::back_inserter(open), &Order::isOpen, &OrderPtr::operator*);
  return open;
}

OrderList closedOrders(const OrderList& orders) {
  OrderList closed;
  std::ranges::remove_copy_if(orders, std::back_inserter(closed), &Order::isOpen,
                              &OrderPtr::operator*);
  std::ranges::stable_sort(closed, std::ranges::greater{}, updateDate);
  return closed;
}

OrderPtr findOrder(const std::optional<OrderList>& orders, std::int64_t id) {
  if (!orders) return nullptr;
  const auto found =
      std::ranges::find(*orders, id, [](const OrderPtr& order) { return order->id; });
  return found == orders->end() ? nullptr : *found;
}

}  // namespace ovinta
