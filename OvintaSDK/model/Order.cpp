#include "OvintaSDK/model/Order.h"

#include <atomic>

#include "OvintaSDK/model/OpennessChanges.h"
#include "OvintaSDK/model/SiteCoordinate.h"

namespace ovinta {
namespace {

std::atomic<std::uint64_t> changes = 0;

bool isOpenAt(const OrderProgress& progress) {
  return isOpen(progress.state) && isOpen(progress.customerState);
}

/// Replaces a field, and counts it if that opens or closes the order. Both are one step for whoever
/// looks at the order.
template <class Field>
void replace(Guarded<OrderProgress>& guarded, Field OrderProgress::*field, Field value) {
  guarded.change([&](OrderProgress& progress) {
    const bool wasOpen = isOpenAt(progress);
    progress.*field = value;
    if (isOpenAt(progress) != wasOpen) ++changes;
  });
}

}  // namespace

std::uint64_t opennessChanges() { return changes; }

void Order::setState(OrderState state) { replace(progress_, &OrderProgress::state, state); }

void Order::setCustomerState(CustomerState state) {
  replace(progress_, &OrderProgress::customerState, state);
}

bool Order::isOpen() const { return progress_.read(isOpenAt); }

std::optional<platform::Location> Order::siteLocation() const {
  return locationFromTexts(siteLatitude, siteLongitude);
}

std::optional<double> Order::siteDistance(const platform::Location& from) const {
  return distanceBetween(from, siteLocation());
}

}  // namespace ovinta
