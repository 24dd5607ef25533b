#include "cli/device/TripOptions.h"

#include "cli/client/NumberOptions.h"
#include "cli/device/BuiltInTrip.h"

namespace ovinta::cli {

using platform::simulation::Trip;

namespace {

constexpr const char* kGroup = "Trip options";

}  // namespace

void addPlainTripOptions(CLI::App& command, TripOptions& options) {
  command
      .add_option_function<double>(
          "--pace",
          [&options](double seconds) { options.pace = std::chrono::duration<double>(seconds); },
          "Seconds that the trip takes on the wall clock; 0: as fast as it goes")
      ->check(isDecimal<double>)
      ->check(CLI::Range(0.0, 86400.0))
      ->default_str("20")
      ->group(kGroup);
  command
      .add_option("--trip", options.file,
                  "GPX file of the trip, in place of the drive that is built in")
      ->type_name("FILE")
      ->group(kGroup);
}

void addTripOptions(CLI::App& command, TripOptions& options) {
  addPlainTripOptions(command, options);
  addNumber(command, "--seed", options.seed, "Same seed, same events")
      ->capture_default_str()
      ->group(kGroup);
}

platform::Expected<Trip, std::string> loadTrip(const TripOptions& options) {
  auto trip = options.file ? Trip::fromGPX(*options.file) : Trip::fromGPXText(builtInTrip());
  if (auto* const reason = std::get_if<std::string>(&trip)) return std::move(*reason);
  return std::get<Trip>(std::move(trip));
}

}  // namespace ovinta::cli
