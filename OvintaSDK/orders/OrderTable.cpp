#include "OvintaSDK/orders/OrderTable.h"

#include <algorithm>
#include <utility>

namespace ovinta {

OrderTable::OrderTable(OrderList orders) : orders_(std::move(orders)) {
  entries_.reserve(orders_.size());
  for (const OrderPtr& order : orders_) entries_.push_back({order->id, entries_.size()});
  std::ranges::sort(entries_);
}

std::span<const OrderTable::Entry> OrderTable::places(std::int64_t id) const {
  // clang 14 cannot read what the ranges' equal_range gives.
  return {std::ranges::lower_bound(entries_, id, {}, &Entry::id),
          std::ranges::upper_bound(entries_, id, {}, &Entry::id)};
}

OrderPtr OrderTable::find(std::int64_t id) const {
  const auto found = places(id);
  return found.empty() ? nullptr : orders_[found.front().place];
}

}  // namespace ovinta
