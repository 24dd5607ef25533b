#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <variant>

#include "cli/Commands.h"
#include "cli/demo/BuiltInTrip.h"
#include "cli/demo/Demo.h"

namespace ovinta::cli {
namespace {

using platform::simulation::Trip;

int runDemo(const DemoOptions& options) {
  auto trip = options.trip ? Trip::fromGPX(*options.trip) : Trip::fromGPXText(builtInTrip());
  if (const auto* error = std::get_if<std::string>(&trip)) {
    std::cerr << "ovinta demo: " << *error << "\n";
    return 1;
  }
  Demo demo(options, std::get<Trip>(std::move(trip)));
  return demo.run() ? 0 : 1;
}

}  // namespace

void addDemoCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* command =
      app.add_subcommand("demo", "Take one customer's order from the account to the rating");
  command
      ->add_option_function<double>(
          "--pace",
          [options](double seconds) { options->pace = std::chrono::duration<double>(seconds); },
          "Seconds that the trip takes on the wall clock (20); 0: as fast as it goes")
      ->check(CLI::Range(0.0, 86400.0));
  command->add_flag("--json", options->json, "Print one JSON object per line");
  command->add_option("--base-url", options->baseURL,
                      "Use the service that runs there, not a sandbox of its own");
  command->add_option("--trip", options->trip, "GPX file of the trip to the site")
      ->check(CLI::ExistingFile);
  command->add_option("--seed", options->seed, "Same seed, same events")->capture_default_str();
  command->add_flag("--verbose", options->verbose, "Show the library's log on standard error");
  command->callback([options, &exitCode] { exitCode = runDemo(*options); });
}

}  // namespace ovinta::cli
