#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "../../platform/FatalError.h"

namespace ovinta {

/// What is known of one case of a state enumeration.
template <class State>
struct StateRow {
  State state;
  /// The text that stands for the case in JSON.
  std::string_view wireString;
  /// Where the enumeration knows open states.
  bool isOpen = true;
  /// A title for people, where the enumeration has any.
  std::string_view title = {};
};

/// The rows of a state enumeration, in the order of their raw values, as `kRows`.
template <class State>
struct StateTable;

/// The integer that stands for the state in the order store.
template <class State>
requires requires { StateTable<State>::kRows; }
constexpr std::int64_t rawValue(State state) { return static_cast<std::int64_t>(state); }

/// The state with that raw value; absent when there is none.
template <class State>
constexpr std::optional<State> stateFromRawValue(std::int64_t rawValue) {
  for (const StateRow<State>& row : StateTable<State>::kRows) {
    if (ovinta::rawValue(row.state) == rawValue) return row.state;
  }
  return std::nullopt;
}

/// The state with that wire string, compared exactly; absent when there is none.
template <class State>
constexpr std::optional<State> stateFromWireString(std::string_view wireString) {
  for (const StateRow<State>& row : StateTable<State>::kRows) {
    if (row.wireString == wireString) return row.state;
  }
  return std::nullopt;
}

/// The row of the state, or null for a value that is none of the enumeration's cases.
template <class State>
constexpr const StateRow<State>* findStateRow(State state) {
  for (const StateRow<State>& row : StateTable<State>::kRows) {
    if (row.state == state) return &row;
  }
  return nullptr;
}

/// The row of the state. A value that is none of the enumeration's cases ends the process.
template <class State>
const StateRow<State>& stateRow(State state) {
  if (const StateRow<State>* row = findStateRow(state)) return *row;
  platform::fatalError("unexpected enumeration case");
}

}  // namespace ovinta
