#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string_view>
#include <type_traits>

namespace ovinta::platform {

/// Where the names of an enumeration's cases are: `EnumNames<Enum>::of(value)`, which is empty for
/// a value that is none of the cases. An enumeration that has names specialises it.
template <class Enum>
struct EnumNames;

/// The names of an enumeration whose cases are numbered from 0 on, given as an array in that order;
/// to be derived from by its `EnumNames`.
template <const auto& names>
struct NamesInOrder {
  /// The name of the case; empty for a value that is none of the cases.
  static constexpr std::string_view of(auto value) {
    const auto index = static_cast<std::size_t>(value);
    return index < names.size() ? names[index] : std::string_view();
  }
};

/// An enumeration whose cases have names.
template <class Enum>
concept NamedEnum = std::is_enum_v<Enum> && requires(Enum value) {
  { EnumNames<Enum>::of(value) } -> std::same_as<std::string_view>;
};

/// The name of the case, for logs and diagnostics; "invalid" for a value that is none of the cases.
/// States are named as in JSON ("en_route"), the reasons of a refusal by their messages ("Already
/// fetching orders"), everything else by its own words in English. May be called from any thread.
template <NamedEnum Enum>
constexpr std::string_view name(Enum value) {
  const std::string_view found = EnumNames<Enum>::of(value);
  return found.empty() ? "invalid" : found;
}

/// Writes the name of the case.
template <class Traits, NamedEnum Enum>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& stream, Enum value) {
  return stream << name(value);
}

}  // namespace ovinta::platform

namespace ovinta {

/// Where a call with one of the library's own enumerations is looked for.
using platform::name;
using platform::operator<<;

}  // namespace ovinta
