#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "cli/Commands.h"
#include "cli/client/ClientServices.h"
#include "cli/track/Track.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

struct TrackInput : TrackOptions {
  bool isLive = false;
};

/// Whether this system lets its own position be followed; says why not.
bool canFollowThisDevice(const ClientOptions& options) {
  if (clientServices(options).location->locationServicesEnabled()) return true;
  std::cerr << "ovinta track: location services are off on this system, so that its own position "
               "cannot be followed.\n";
  return false;
}

ExitCode track(const TrackInput& input) {
  if (input.isLive && !canFollowThisDevice(input.client)) return ExitCode::failure;
  Interruption interruption;
  auto trip = loadTrip(input.trip);
  if (const auto* error = std::get_if<std::string>(&trip)) {
    std::cerr << "ovinta track: " << *error << "\n";
    return ExitCode::failure;
  }
  return Track(input, std::get<Trip>(std::move(trip)), interruption).run();
}

}  // namespace

void addTrackCommand(CLI::App& app, int& exitCode) {
  auto input = std::make_shared<TrackInput>();
  CLI::App* command = app.add_subcommand(
      "track", "Follow the open orders on a simulated trip, and tell the service for real");
  addTripOptions(*command, input->trip);
  command->add_flag("--live", input->isLive, "Follow this device's own position instead")
      ->excludes("--trip")
      ->excludes("--pace")
      ->excludes("--seed");
  addClientOptions(*command, input->client);
  command->callback([input, &exitCode] { exitCode = static_cast<int>(track(*input)); });
}

}  // namespace ovinta::cli
