#include <CLI/CLI.hpp>
#include <memory>

#include "cli/client/ClientServices.h"
#include "cli/commands/Commands.h"
#include "cli/track/LiveTrack.h"
#include "cli/track/Track.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

struct TrackCommandOptions : TrackOptions {
  bool isLive = false;
  platform::linuxos::PositionSource positionSource = platform::linuxos::PositionSource::automatic;
};

platform::linuxos::Options linuxOptions(const TrackCommandOptions& options) {
  platform::linuxos::Options system;
  system.positionSource = options.positionSource;
  if (options.isDelivering) system.delivery.emplace();
  return system;
}

ExitCode run(const TrackCommandOptions& options, std::optional<Trip> trip) {
  Interruption interruption;
  const ExitCode code = options.isLive
                            ? LiveTrack(options.client, linuxOptions(options), interruption).run()
                            : Track(options, std::move(trip), interruption).run();
  refuseUnkept();
  return code;
}

ExitCode track(const TrackCommandOptions& options) {
  if (!options.trip.file) return run(options, std::nullopt);
  auto trip = loadTrip(options.trip);
  if (!trip) {
    Output(options.client.json).printFailure("No Trip", trip.error());
    return ExitCode::failure;
  }
  return run(options, *std::move(trip));
}

}  // namespace

void addTrackCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<TrackCommandOptions>();
  CLI::App* command = app.add_subcommand("track",
                                         "Follow the open orders on a simulated trip, to the site "
                                         "of the first unless a file of another "
                                         "trip is given, and tell the service for real");
  addTripOptions(*command, options->trip);
  command->add_flag("--deliver", options->isDelivering,
                    "Keep what could not be sent, and send it once that is possible");
  CLI::Option* const live =
      command->add_flag("--live", options->isLive, "Follow this device's own position instead")
          ->excludes("--trip")
          ->excludes("--pace")
          ->excludes("--seed");
  addPositionSourceOption(*command, options->positionSource)->needs(live);
  addClientOptions(*command, options->client);
  command->callback([options, &exitCode] {
    exitCode =
        static_cast<int>(Output(options->client.json).guard([&] { return track(*options); }));
  });
}

}  // namespace ovinta::cli
