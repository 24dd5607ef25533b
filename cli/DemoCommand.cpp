#include <CLI/CLI.hpp>
#include <memory>
#include <variant>

#include "cli/Commands.h"
#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/demo/Demo.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

ExitCode runDemo(const DemoOptions& options) {
  Interruption interruption;
  auto trip = loadTrip(options.trip);
  if (const auto* error = std::get_if<std::string>(&trip)) {
    Output(options.service.json).printFailure("No Trip", *error);
    return ExitCode::failure;
  }
  Demo demo(options, std::get<Trip>(std::move(trip)), interruption);
  return demo.run() ? ExitCode::success : ExitCode::failure;
}

}  // namespace

void addDemoCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* command =
      app.add_subcommand("demo", "Take one customer's order from the account to the rating");
  addTripOptions(*command, options->trip);
  addServiceOptions(*command, options->service);
  command->get_option("--base-url")
      ->description("Use the service that runs there, not a sandbox of its own")
      ->group("Options");
  command->callback([options, &exitCode] {
    exitCode =
        static_cast<int>(Output(options->service.json).guard([&] { return runDemo(*options); }));
  });
}

}  // namespace ovinta::cli
