#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "../../platform/EnumNames.h"
#include "../../platform/FatalError.h"

namespace ovinta {

/// What is known of one case of a state enumeration. A constant; may be read from any thread, as
/// all functions here may be called.
template <class State>
struct StateRow {
  /// The case itself.
  State state;
  /// The text that stands for the case in JSON, and its `name`.
  std::string_view wireString;
  /// Whether it is an open state; true throughout where the enumeration does not tell them apart.
  bool isOpen = true;
  /// An English title for people; empty where the enumeration has none.
  std::string_view title = {};
};

/// The table of a state enumeration: its rows as `kRows`, in the order of their raw values.
template <class State>
struct StateTable;

/// The integer that stands for the state in the order store and in Objective-C. JSON has the wire
/// string in its place.
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

/// A state is named by its wire string.
template <class State>
requires requires { StateTable<State>::kRows; }
struct platform::EnumNames<State> {
  /// The wire string of the state; empty for a value that is none of the cases.
  static constexpr std::string_view of(State state) {
    const auto* row = findStateRow(state);
    return row ? row->wireString : std::string_view();
  }
};

}  // namespace ovinta
