#pragma once

#include <memory>

#include "../../platform/Date.h"

namespace ovinta {

/// The span of time in which an order is to be picked up, on the wire to the millisecond. Nothing
/// checks that `start` comes first. A plain value. A window never changes; a variable that holds
/// one may be given another window as a whole.
struct PickupWindow final {
  /// The first and the last instant.
  const platform::Date start;
  const platform::Date end;

  /// A window from one instant to the other.
  PickupWindow(platform::Date startDate, platform::Date endDate) : start(startDate), end(endDate) {}
  /// A window of one instant.
  explicit PickupWindow(platform::Date date) : PickupWindow(date, date) {}

  PickupWindow(const PickupWindow&) = default;
  /// Gives the variable the other window as a whole.
  PickupWindow& operator=(const PickupWindow& other) {
    if (this != &other) std::construct_at(this, other);
    return *this;
  }

  friend bool operator==(const PickupWindow&, const PickupWindow&) = default;
};

}  // namespace ovinta
