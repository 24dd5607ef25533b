#pragma once

#include "platform/Date.h"

namespace ovinta {

/// The span of time in which an order is to be picked up. Nothing checks that `start` comes first.
struct PickupWindow {
  platform::Date start;
  platform::Date end;

  PickupWindow(platform::Date startDate, platform::Date endDate) : start(startDate), end(endDate) {}
  /// A window of one instant.
  explicit PickupWindow(platform::Date date) : PickupWindow(date, date) {}

  friend bool operator==(const PickupWindow&, const PickupWindow&) = default;
};

}  // namespace ovinta
