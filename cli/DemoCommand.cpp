#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <variant>

#include "cli/Commands.h"
#include "cli/client/ClientOptions.h"
#include "cli/demo/Demo.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

int runDemo(const DemoOptions& options) {
  Interruption interruption;
  auto trip = loadTrip(options.trip);
  if (const auto* error = std::get_if<std::string>(&trip)) {
    std::cerr << "ovinta demo: " << *error << "\n";
    return 1;
  }
  Demo demo(options, std::get<Trip>(std::move(trip)), interruption);
  return demo.run() ? 0 : 1;
}

}  // namespace

void addDemoCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* command =
      app.add_subcommand("demo", "Take one customer's order from the account to the rating");
  addTripOptions(*command, options->trip);
  command->add_flag("--json", options->json, "Print one JSON object per line");
  command
      ->add_option("--base-url", options->baseURL,
                   "Use the service that runs there, not a sandbox of its own")
      ->check(isBaseURL);
  command->add_flag("--verbose", options->verbose, "Show the library's log on standard error");
  command->callback([options, &exitCode] { exitCode = runDemo(*options); });
}

}  // namespace ovinta::cli
