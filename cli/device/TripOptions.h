#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/Expected.h"
#include "platform/simulation/trip/Trip.h"

namespace CLI {
class App;
}

namespace ovinta::cli {

/// How a simulated device gets to the site.
struct TripOptions {
  /// How long the trip takes on the wall clock; zero: as fast as it goes.
  std::chrono::duration<double> pace{20};
  /// A GPX file; absent: the drive that is built in.
  std::optional<std::filesystem::path> file = {};
  std::uint64_t seed = 1;
};

/// Adds all options; `options` must outlive the parsing.
void addTripOptions(CLI::App& command, TripOptions& options);
/// Adds all options but the seed, for trips in which nothing is left to chance.
void addPlainTripOptions(CLI::App& command, TripOptions& options);

/// The trip asked for, or a sentence that says what is wrong with its file.
platform::Expected<platform::simulation::Trip, std::string> loadTrip(const TripOptions& options);

}  // namespace ovinta::cli
