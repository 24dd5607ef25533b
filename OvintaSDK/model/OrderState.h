#pragma once

#include <array>
#include <cstdint>

#include "OvintaSDK/model/StateTable.h"

namespace ovinta {

/// The state of an order as the store sees it; it is `gone` when the service says so, also by
/// answering an event that it does not have the order. `name(state)` is its text in JSON and in
/// logs. The functions may be called from any thread.
enum class OrderState : std::int64_t {
  created = 0,
  ready = 1,
  delayed = 2,
  cancelled = 3,
  completed = 4,
  gone = 5
};

template <>
struct StateTable<OrderState> {
  static constexpr std::array<StateRow<OrderState>, 6> kRows{{
      {OrderState::created, "created", true},
      {OrderState::ready, "ready", true},
      {OrderState::delayed, "delayed", true},
      {OrderState::cancelled, "cancelled", false},
      {OrderState::completed, "completed", false},
      {OrderState::gone, "gone", false},
  }};
};

/// Whether the store still works towards the pickup: `created`, `ready` and `delayed`. A value that
/// is none of the cases ends the process.
inline bool isOpen(OrderState state) { return stateRow(state).isOpen; }

}  // namespace ovinta
