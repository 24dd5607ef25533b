#pragma once

#include <string_view>

namespace ovinta::platform::portable {

/// The text without those characters at its ends; by default without blanks, tabs and line ends.
constexpr std::string_view trimmed(std::string_view text, std::string_view characters = " \t\r\n") {
  const auto first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

}  // namespace ovinta::platform::portable
