#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/orders/OrderTable.h"

namespace ovinta {

/// The orders that were open when this was last looked at; what becomes of an order afterwards
/// shows with the next look. May be used from any thread.
class OpenOrders {
 public:
  /// The open orders in the order of all, or what was set since the last look. Absent at first.
  std::optional<OrderList> get() const;

  /// Replaces them until the next look. The list holds no null.
  void set(std::optional<OrderList> orders);

  /// Looks at `all`, without effect while that is null. Where no order has been opened or closed
  /// since the last look save `changed`, if any, no other is looked at. Of several threads the last
  /// one does so with the latest `all`.
  void rebuild(const Guarded<OrderTablePtr>& all, const Order* changed = nullptr);

 private:
  /// What is open: that was set, or else that was found, by its place in the list of all.
  struct Open {
    std::optional<OrderList> given;
    std::optional<std::map<std::size_t, OrderPtr>> found;
  };

  bool noteChange(const OrderTable& all, const Order& changed);

  /// Held during a look.
  std::mutex looking_;
  /// What the last look looked at, unless the open orders were set since. It keeps no order alive.
  std::weak_ptr<const OrderTable> seen_;
  /// The number of `opennessChanges` that the last look knew of.
  std::uint64_t changesSeen_ = 0;
  /// Replaced while `looking_` is held.
  Guarded<Open> open_;
};

}  // namespace ovinta
