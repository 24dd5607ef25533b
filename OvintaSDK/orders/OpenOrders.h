#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

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
  /// What a look found: for each place of the table, whether the order there is open.
  struct Found {
    OrderTablePtr all;
    std::vector<char> isOpen;
  };

  bool noteChange(const Order& changed);

  /// Held during a look.
  std::mutex looking_;
  /// The number of `opennessChanges` that the last look knew of.
  std::uint64_t changesSeen_ = 0;
  mutable std::mutex mutex_;
  /// Changed under both locks, so that one of them is enough to read it.
  Found found_;
  /// Whether `given_` stands in for what was found.
  bool isGiven_ = true;
  std::optional<OrderList> given_;
};

}  // namespace ovinta
