#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace ovinta::cli {

struct DemoOptions {
  /// How long the trip takes on the wall clock; zero: as fast as it goes.
  std::chrono::duration<double> pace{20};
  /// One JSON object per line instead of text for people.
  bool json = false;
  /// A service that already runs; absent: a sandbox in this process.
  std::optional<std::string> baseURL = {};
  /// A GPX file; absent: the drive that is built in.
  std::optional<std::filesystem::path> trip = {};
  std::uint64_t seed = 1;
  /// Shows the platform's log too.
  bool verbose = false;
};

}  // namespace ovinta::cli
