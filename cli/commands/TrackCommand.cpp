#include <CLI/CLI.hpp>
#include <memory>

#include "cli/client/ClientServices.h"
#include "cli/commands/Commands.h"
#include "cli/track/LiveTrack.h"
#include "cli/track/Track.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

struct TrackInput : TrackOptions {
  bool isLive = false;
  platform::linuxos::PositionSource positionSource = platform::linuxos::PositionSource::automatic;
};

ExitCode run(const TrackInput& input, std::optional<Trip> trip) {
  Interruption interruption;
  const ExitCode code = input.isLive
                            ? LiveTrack(input.client, input.positionSource, interruption).run()
                            : Track(input, std::move(trip), interruption).run();
  refuseUnkept();
  return code;
}

ExitCode track(const TrackInput& input) {
  if (!input.trip.file) return run(input, std::nullopt);
  auto trip = loadTrip(input.trip);
  if (const auto* error = std::get_if<std::string>(&trip)) {
    Output(input.client.json).printFailure("No Trip", *error);
    return ExitCode::failure;
  }
  return run(input, std::get<Trip>(std::move(trip)));
}

}  // namespace

void addTrackCommand(CLI::App& app, int& exitCode) {
  auto input = std::make_shared<TrackInput>();
  CLI::App* command = app.add_subcommand("track",
                                         "Follow the open orders on a simulated trip, to the site "
                                         "of the first unless a file of another "
                                         "trip is given, and tell the service for real");
  addTripOptions(*command, input->trip);
  CLI::Option* const live =
      command->add_flag("--live", input->isLive, "Follow this device's own position instead")
          ->excludes("--trip")
          ->excludes("--pace")
          ->excludes("--seed");
  addPositionSourceOption(*command, input->positionSource)->needs(live);
  addClientOptions(*command, input->client);
  command->callback([input, &exitCode] {
    exitCode = static_cast<int>(Output(input->client.json).guard([&] { return track(*input); }));
  });
}

}  // namespace ovinta::cli
