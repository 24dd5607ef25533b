#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <variant>

#include "cli/client/ClientOptions.h"
#include "cli/client/ClientServices.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "cli/demo/Demo.h"
#include "cli/demo/TunnelDemo.h"

namespace ovinta::cli {
namespace {

ExitCode runDemo(const DemoOptions& options) {
  auto trip = loadTrip(options.trip);
  if (!trip) {
    Output(options.service.json).printFailure("No Trip", trip.error());
    return ExitCode::failure;
  }
  if (options.isThroughTunnel) return runTunnelDemo(options, *std::move(trip));
  Interruption interruption;
  Demo demo(options, *std::move(trip), interruption);
  const ExitCode code = demo.run() ? ExitCode::success : ExitCode::failure;
  refuseUnkept();
  return code;
}

/// The pace on a real device, by the wall clock: slow enough for each step to be seen.
constexpr std::chrono::seconds kRealPace{60};

/// Adds the choice of the device; a real one has a pace of its own unless one is given.
void addDeviceOption(CLI::App& command, DemoOptions& options) {
  command
      .add_option_function<std::string>(
          "--device",
          [&command, &options](const std::string& name) {
            if (name != "linux") return;
            options.device = DemoDeviceKind::linux;
            if (command.count("--pace") == 0) options.trip.pace = kRealPace;
          },
          "What goes on the trip: a simulated device, or this machine, with the position by the "
          "real GeoClue and a pace of 60 where none is given")
      ->check(CLI::IsMember({"simulated", "linux"}))
      ->default_str("simulated")
      ->type_name("DEVICE");
}

}  // namespace

void addDemoCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* command =
      app.add_subcommand("demo", "Take one customer's order from the account to the rating");
  addTripOptions(*command, options->trip);
  command->get_option("--trip")->description(
      "GPX file of a trip to site 42, in place of the drive that is built in");
  addDeviceOption(*command, *options);
  addServiceOptions(*command, options->service);
  command->get_option("--base-url")
      ->description("Use the service that runs there, not a sandbox of its own")
      ->group("Options");
  command
      ->add_flag(
          "--tunnel", options->isThroughTunnel,
          "Make the trip twice, without and with delivery of what could not be sent, through "
          "a tunnel where it has none, as fast as it goes, and compare what the service "
          "learned, and when")
      ->excludes("--device", "--pace", "--base-url");
  command->callback([options, &exitCode] {
    exitCode =
        static_cast<int>(Output(options->service.json).guard([&] { return runDemo(*options); }));
  });
}

}  // namespace ovinta::cli
