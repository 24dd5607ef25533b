#include "OvintaSDK/orders/OpenOrders.h"

#include <utility>

#include "OvintaSDK/model/OpennessChanges.h"

namespace ovinta {

std::optional<OrderList> OpenOrders::get() const {
  return open_.read([](const Open& open) {
    if (!open.found) return open.given;
    OrderList orders;
    orders.reserve(open.found->size());
    for (const auto& [place, order] : *open.found) orders.push_back(order);
    return std::optional(std::move(orders));
  });
}

void OpenOrders::set(std::optional<OrderList> orders) {
  // What may be the last to hold an order outlives the lock.
  Open open{.given = std::move(orders), .found = {}};
  const std::lock_guard lock(looking_);
  seen_.reset();
  open = open_.exchange(std::move(open));
}

void OpenOrders::rebuild(const Guarded<OrderTablePtr>& all, const Order* changed) {
  // What may be the last to hold an order outlives the lock.
  OrderTablePtr table;
  Open open;
  const std::lock_guard lock(looking_);
  table = all.get();
  if (!table) return;
  const bool isSeen = !table.owner_before(seen_) && !seen_.owner_before(table);
  if (isSeen && changed && noteChange(*table, *changed)) return;
  seen_ = table;
  // The number is taken first: what changes meanwhile makes the next look a whole one.
  changesSeen_ = opennessChanges();
  auto& found = open.found.emplace();
  for (std::size_t place = 0; place < table->list().size(); ++place) {
    const OrderPtr& order = table->list()[place];
    if (order->isOpen()) found.emplace_hint(found.end(), place, order);
  }
  open = open_.exchange(std::move(open));
}

/// Notes whether the order is open, and tells whether no other can have been opened or closed since
/// the last look.
bool OpenOrders::noteChange(const OrderTable& all, const Order& changed) {
  // Whether the order is open is looked at before the number, which then counts the change if any.
  const bool isOpen = changed.isOpen();
  const std::uint64_t changes = opennessChanges();
  if (changes == changesSeen_) return true;
  bool isDifferent = false;
  open_.change([&](Open& open) {
    for (const auto& [id, place] : all.places(changed.id)) {
      const OrderPtr& order = all.list()[place];
      if (order.get() != &changed || open.found->contains(place) == isOpen) continue;
      isDifferent = true;
      isOpen ? void(open.found->emplace(place, order)) : void(open.found->erase(place));
    }
  });
  const bool isAll = changes - changesSeen_ == std::uint64_t{isDifferent};
  changesSeen_ = changes;
  return isAll;
}

}  // namespace ovinta
