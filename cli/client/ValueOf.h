#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "platform/Expected.h"

namespace ovinta::cli {

/// The value; where there is a sentence instead of it, that is thrown as `std::runtime_error`.
template <class T>
T valueOf(platform::Expected<T, std::string> result) {
  if (!result) throw std::runtime_error(result.error());
  return *std::move(result);
}

}  // namespace ovinta::cli
