#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Location.h"

namespace ovinta::platform::linuxos {

/// What one line of gpsd's tells, of that which the library wants to know. A plain value.
struct GpsdReport {
  /// The position of a receiver that has found one.
  std::optional<Location> location = {};
  /// gpsd's own version, which its greeting holds; never empty.
  std::optional<std::string> version = {};
};

/// Reads a line of gpsd's protocol; one that tells anything else, or makes no sense, tells nothing.
GpsdReport readGpsdLine(std::string_view line);

}  // namespace ovinta::platform::linuxos
