#include "OvintaSDK/orders/OpenOrders.h"

#include <algorithm>
#include <utility>

#include "OvintaSDK/model/OpennessChanges.h"

namespace ovinta {

std::optional<OrderList> OpenOrders::get() const {
  const std::lock_guard lock(mutex_);
  if (isGiven_) return given_;
  OrderList open;
  open.reserve(static_cast<std::size_t>(std::ranges::count(found_.isOpen, 1)));
  for (std::size_t place = 0; place < found_.isOpen.size(); ++place) {
    if (found_.isOpen[place]) open.push_back(found_.all->list()[place]);
  }
  return open;
}

void OpenOrders::set(std::optional<OrderList> orders) {
  // The argument, which holds the old list after the swap, outlives the lock: it may be the last to
  // hold an order.
  const std::lock_guard lock(mutex_);
  std::swap(given_, orders);
  isGiven_ = true;
}

void OpenOrders::rebuild(const Guarded<OrderTablePtr>& all, const Order* changed) {
  // What may be the last to hold an order outlives the locks.
  Found found;
  std::optional<OrderList> given;
  const std::lock_guard looking(looking_);
  found.all = all.get();
  if (!found.all) return;
  const bool isKnown = found.all == found_.all && changed && noteChange(*changed);
  if (!isKnown) {
    // The number is taken first: what changes meanwhile makes the next look a whole one.
    changesSeen_ = opennessChanges();
    found.isOpen.reserve(found.all->list().size());
    for (const OrderPtr& order : found.all->list()) found.isOpen.push_back(order->isOpen());
  }
  const std::lock_guard lock(mutex_);
  if (!isKnown) std::swap(found_, found);
  std::swap(given_, given);
  isGiven_ = false;
}

/// Notes whether the order is open, and tells whether no other can have been opened or closed since
/// the last look.
bool OpenOrders::noteChange(const Order& changed) {
  const auto isIt = [&](std::size_t place) { return found_.all->list()[place].get() == &changed; };
  // Whether the order is open is looked at before the number, which then counts the change if any.
  const bool isOpen = changed.isOpen();
  const std::uint64_t changes = opennessChanges();
  const auto places = found_.all->places(changed.id);
  bool isDifferent = false;
  for (const auto& [id, place] : places) {
    if (isIt(place)) isDifferent = static_cast<bool>(found_.isOpen[place]) != isOpen;
  }
  if (changes - changesSeen_ != (isDifferent ? 1 : 0)) return false;
  changesSeen_ = changes;
  const std::lock_guard lock(mutex_);
  for (const auto& [id, place] : places) {
    if (isIt(place)) found_.isOpen[place] = isOpen;
  }
  return true;
}

}  // namespace ovinta
