#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <string>
#include <type_traits>

namespace ovinta::cli {

/// What is wrong with a text that is not, as a whole, a decimal number in the type's range; empty
/// for all others.
/// CLI11 itself takes octal and hexadecimal numbers too, and the largest one for what is larger.
template <class Number>
std::string isDecimal(const std::string& text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  bool isOne = error == std::errc() && rest == end;
  if constexpr (std::is_integral_v<Number>) {
    isOne = isOne && std::to_string(number) == text;
  } else {
    isOne = isOne && std::isfinite(number);
  }
  if (isOne) return "";
  return "\"" + text + "\" is no " + (std::is_integral_v<Number> ? "whole " : "") +
         "decimal number, or too large";
}

template <class Holder>
struct NumberIn {
  using Type = Holder;
};
template <class Holder>
requires requires { typename Holder::value_type; }
struct NumberIn<Holder> {
  using Type = typename Holder::value_type;
};

/// Adds an option, or a positional, that holds a number, an optional one or a list of them.
template <class Holder>
CLI::Option* addNumber(CLI::App& command, const std::string& name, Holder& holder,
                       const std::string& description) {
  return command.add_option(name, holder, description)
      ->check(isDecimal<typename NumberIn<Holder>::Type>);
}

}  // namespace ovinta::cli
