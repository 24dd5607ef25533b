#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../platform/Export.h"

namespace ovinta {

/// The service's error answer: {"errors": {field: [message, ...]}}.
struct OVINTA_EXPORT ErrorBody {
  std::map<std::string, std::vector<std::string>> errors;

  /// The body that the JSON text holds; absent when it is none.
  static std::optional<ErrorBody> parse(std::string_view text);

  /// All messages of all fields, in the order of the fields' names, joined with ", ".
  std::string message() const;

  friend bool operator==(const ErrorBody&, const ErrorBody&) = default;
};

}  // namespace ovinta
