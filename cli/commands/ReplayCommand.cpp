#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/client/ClientServices.h"
#include "cli/client/Output.h"
#include "cli/client/ValueOf.h"
#include "cli/client/Waiting.h"
#include "cli/commands/Commands.h"
#include "cli/device/Interruption.h"
#include "cli/device/TripOptions.h"
#include "platform/linux/Linux.h"
#include "replay/Rig.h"
#include "replay/TripReplay.h"

namespace ovinta::cli {
namespace {

/// How long it takes to notice that somebody follows or that the command has ended.
constexpr std::chrono::milliseconds kWatchInterval{50};

struct ReplayOptions {
  TripOptions trip = {};
  std::vector<std::string> command = {};
};

replay::TripReplay tripReplay(const TripOptions& options) {
  return {valueOf(loadTrip(options)), options.pace, *valueServices().geodesy};
}

std::unique_ptr<replay::Rig> startedRig() {
  const Waiting waiting("Waiting for GeoClue");
  return valueOf(replay::Rig::start());
}

/// Returns the exit status of the command; without one it goes on until it is interrupted.
int replayTrip(const ReplayOptions& options) {
  Interruption interruption;
  auto trip = tripReplay(options.trip);
  const auto rig = startedRig();
  std::optional<replay::ChildProcess> command;
  if (options.command.empty()) {
    std::cout << "export " << rig->variable() << std::endl;
  } else {
    command.emplace(options.command, std::vector{rig->variable()}, replay::ChildOutput::shared);
  }
  for (bool isUnderWay = false;; interruption.check(kWatchInterval)) {
    if (command && command->exitStatus()) return command->wait();
    isUnderWay = isUnderWay || rig->isFollowed();
    if (!isUnderWay) continue;
    if (const auto location = trip.next(std::chrono::steady_clock::now())) rig->send(*location);
  }
}

}  // namespace

void addReplayCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<ReplayOptions>();
  CLI::App* command = app.add_subcommand(
      "replay",
      "Run a command on a system whose GeoClue follows a trip, which begins when it is "
      "first asked for the position");
  addPlainTripOptions(*command, options->trip);
  command->get_option("--trip")->description(
      "GPX file of the trip, in place of a drive to 40.7411, -73.9897, site 42 of the sandbox");
  command->add_option("command", options->command,
                      "The command and its arguments, after --; without it the address of the bus "
                      "is printed, and the trip goes on until it is interrupted");
  command->callback([options, &exitCode] {
    const ExitCode failure = Output(false).guard([&] {
      exitCode = replayTrip(*options);
      return ExitCode::success;
    });
    if (failure != ExitCode::success) exitCode = static_cast<int>(failure);
  });
}

}  // namespace ovinta::cli
