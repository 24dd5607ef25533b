#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../platform/Export.h"

namespace ovinta {

/// The service's error answer: {"errors": {field: [message, ...]}}. A plain value.
struct OVINTA_EXPORT ErrorBody {
  /// The messages, in words for people, by the name of the field that they are about.
  std::map<std::string, std::vector<std::string>> errors;

  /// The body that the JSON text holds; absent when the text is not JSON, has no object under
  /// "errors", or has anything but lists of texts in it. May be called from any thread.
  static std::optional<ErrorBody> parse(std::string_view text);

  /// All messages of all fields, in the order of the fields' names, joined with ", "; empty when
  /// there are none.
  std::string message() const;

  friend bool operator==(const ErrorBody&, const ErrorBody&) = default;
};

}  // namespace ovinta
