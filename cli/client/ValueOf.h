#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace ovinta::cli {

/// The value; where there is a sentence instead of it, that is thrown as `std::runtime_error`.
template <class T>
T valueOf(std::variant<T, std::string> result) {
  if (const auto* error = std::get_if<std::string>(&result)) throw std::runtime_error(*error);
  return std::get<T>(std::move(result));
}

}  // namespace ovinta::cli
