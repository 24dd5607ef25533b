#include <CLI/CLI.hpp>

#include "cli/Commands.h"

namespace {

constexpr int kWrongUsage = 2;

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Pickup of orders, from the shell", "ovinta");
  app.require_subcommand(1);
  int exitCode = 0;
  ovinta::cli::addCustomerCommands(app, exitCode);
  ovinta::cli::addOrderCommands(app, exitCode);
  ovinta::cli::addSiteCommands(app, exitCode);
  ovinta::cli::addConfigCommand(app, exitCode);
  ovinta::cli::addDemoCommand(app, exitCode);
  ovinta::cli::addSandboxCommand(app, exitCode);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // Asking for help ends here too, as a success.
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  return exitCode;
}
