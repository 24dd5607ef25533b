#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "cli/Commands.h"
#include "cli/client/ExitCode.h"
#include "cli/device/Interruption.h"

namespace ovinta::cli {
namespace {

/// What a shell reports of a process that a signal has ended.
constexpr int kSignalBase = 128;

std::string footer() {
  std::string text = "Exit status:";
  for (const auto& [code, meaning] : kExitCodes) {
    text += "\n  " + std::to_string(static_cast<int>(code)) + "  " + std::string(meaning);
  }
  return text;
}

void addCommands(CLI::App& app, int& exitCode) {
  app.require_subcommand(1);
  app.footer(footer());
  addCustomerCommands(app, exitCode);
  addOrderCommands(app, exitCode);
  addSiteCommands(app, exitCode);
  addNotifyCommands(app, exitCode);
  addConfigCommand(app, exitCode);
  addPushCommand(app, exitCode);
  addTrackCommand(app, exitCode);
  addDemoCommand(app, exitCode);
  addSandboxCommand(app, exitCode);
  addManualCommands(app);
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
