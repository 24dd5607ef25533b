#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "cli/Commands.h"
#include "cli/client/Output.h"
#include "cli/device/Interruption.h"

namespace ovinta::cli {
namespace {

/// What a shell reports of a process that a signal has ended.
constexpr int kSignalBase = 128;

constexpr const char* kFooter =
    "Exit status: 0 success; 1 the operation failed, standard error says why; 2 wrong usage; "
    "3 the library never calls back, by design.";

void addCommands(CLI::App& app, int& exitCode) {
  app.require_subcommand(1);
  app.footer(kFooter);
  addCustomerCommands(app, exitCode);
  addOrderCommands(app, exitCode);
  addSiteCommands(app, exitCode);
  addNotifyCommands(app, exitCode);
  addConfigCommand(app, exitCode);
  addPushCommand(app, exitCode);
  addTrackCommand(app, exitCode);
  addDemoCommand(app, exitCode);
  addSandboxCommand(app, exitCode);
}

int run(int argc, char** argv) {
  CLI::App app("Pickup of orders, from the shell", "ovinta");
  int exitCode = 0;
  addCommands(app, exitCode);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // Asking for help ends here too, as a success.
    const bool isHelp = app.exit(error) == 0;
    return static_cast<int>(isHelp ? ExitCode::success : ExitCode::wrongUsage);
  } catch (const Interrupted& interruption) {
    return kSignalBase + interruption.signalNumber;
  } catch (const std::exception& error) {
    std::cerr << "ovinta: " << error.what() << "\n";
    return static_cast<int>(ExitCode::failure);
  }
  return exitCode;
}

}  // namespace
}  // namespace ovinta::cli

int main(int argc, char** argv) {
  const int exitCode = ovinta::cli::run(argc, argv);
  std::cout.flush();
  if (std::cout || exitCode != 0) return exitCode;
  std::cerr << "ovinta: the output could not be written\n";
  return static_cast<int>(ovinta::cli::ExitCode::failure);
}
