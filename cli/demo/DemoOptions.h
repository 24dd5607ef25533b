#pragma once

#include <optional>
#include <string>

#include "cli/device/TripOptions.h"

namespace ovinta::cli {

struct DemoOptions {
  TripOptions trip = {};
  /// One JSON object per line instead of text for people.
  bool json = false;
  /// A service that already runs; absent: a sandbox in this process.
  std::optional<std::string> baseURL = {};
  /// Shows the platform's log too.
  bool verbose = false;
};

}  // namespace ovinta::cli
