#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// A list of orders with an index by identifier. Never changes, so that it is shared in place of
/// being copied.
class OrderTable {
 public:
  /// Where an order stands in the list.
  struct Entry {
    std::int64_t id;
    std::size_t place;

    friend auto operator<=>(const Entry&, const Entry&) = default;
  };

  /// The list holds no null.
  explicit OrderTable(OrderList orders);

  const OrderList& list() const { return orders_; }

  /// The places of the orders with that identifier, in the order of the list.
  std::span<const Entry> places(std::int64_t id) const;

  /// The first order with that identifier, or null.
  OrderPtr find(std::int64_t id) const;

 private:
  const OrderList orders_;
  /// Sorted.
  std::vector<Entry> entries_;
};

using OrderTablePtr = std::shared_ptr<const OrderTable>;

}  // namespace ovinta
