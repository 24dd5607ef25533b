#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "OvintaSDK/model/StateTable.h"

namespace ovinta {

/// Where the customer stands on the way to the pickup. `name(state)` is its text in JSON and in
/// logs. The functions may be called from any thread.
enum class CustomerState : std::int64_t {
  created = 0,
  enRoute = 1,
  nearby = 2,
  arrived = 3,
  waiting = 4,
  completed = 5
};

template <>
struct StateTable<CustomerState> {
  static constexpr std::array<StateRow<CustomerState>, 6> kRows{{
      {CustomerState::created, "created", true, "Created"},
      {CustomerState::enRoute, "en_route", true, "En Route"},
      {CustomerState::nearby, "nearby", true, "Nearby"},
      {CustomerState::arrived, "arrived", true, "Arrived"},
      {CustomerState::waiting, "waiting", true, "Waiting"},
      {CustomerState::completed, "completed", false, "Completed"},
  }};
};

/// Whether the customer's journey still goes on: in every state but `completed`. A value that is
/// none of the cases ends the process, here and in `description`.
inline bool isOpen(CustomerState state) { return stateRow(state).isOpen; }

/// An English title for people, e.g. "En Route".
inline std::string_view description(CustomerState state) { return stateRow(state).title; }

}  // namespace ovinta
