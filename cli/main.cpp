#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <span>
#include <string>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/Commands.h"
#include "cli/client/ExitCode.h"
#include "cli/device/Interruption.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

std::string footer() {
  std::string text = "Exit status:";
  for (const auto& [code, meaning] : kExitCodes) {
    text += "\n  " + std::to_string(static_cast<int>(code)) + "  " + std::string(meaning);
  }
  return text + "\n  " + std::string(kSignalHeading) + "  " + std::string(kSignalMeaning);
}

void addCommands(CLI::App& app, int& exitCode) {
  app.require_subcommand(1);
  app.footer(footer());
  app.set_version_flag(
      "--version", [] { return "ovinta " + Ovinta::sdkVersion(); }, "Print the version and exit");
  addCustomerCommands(app, exitCode);
  addOrderCommands(app, exitCode);
  addSiteCommands(app, exitCode);
  addNotifyCommands(app, exitCode);
  addConfigCommand(app, exitCode);
  addPushCommand(app, exitCode);
  addTrackCommand(app, exitCode);
  addDoctorCommand(app, exitCode);
  addDemoCommand(app, exitCode);
  addReplayCommand(app, exitCode);
  addSandboxCommand(app, exitCode);
  addManualCommands(app);
}

/// JSON, in which everything comes and goes, has no place for other bytes.
void refuseOtherThanUTF8(std::span<char*> arguments) {
  for (const std::string argument : arguments) {
    try {
      platform::writeJSON(argument);
    } catch (const platform::CodingError&) {
      throw CLI::ParseError("an argument is not UTF-8", CLI::ExitCodes::BaseClass);
    }
  }
}

/// Prints what is wrong with the usage, or what was asked for instead of a command.
ExitCode explain(const CLI::App& app, const CLI::ParseError& error) {
  // A word that nobody knows is the cause of what is missing.
  const auto unknown = app.remaining(true);
  const bool isMissing = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
  const bool isHelp =
      app.exit(isMissing && !unknown.empty() ? CLI::ExtrasError(unknown) : error) == 0;
  return isHelp ? ExitCode::success : ExitCode::wrongUsage;
}

int run(int argc, char** argv) {
  CLI::App app("Pickup of orders, from the shell", "ovinta");
  int exitCode = 0;
  addCommands(app, exitCode);
  try {
    refuseOtherThanUTF8(std::span(argv, static_cast<std::size_t>(argc)));
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return static_cast<int>(explain(app, error));
  } catch (const Interrupted& interruption) {
    return kSignalBase + interruption.signalNumber;
  }
  return exitCode;
}

}  // namespace
}  // namespace ovinta::cli

int main(int argc, char** argv) {
  using ovinta::cli::ExitCode;
  try {
    const int exitCode = ovinta::cli::run(argc, argv);
    std::cout.flush();
    if (std::cout || exitCode != 0) return exitCode;
    std::cerr << "ovinta: the output could not be written\n";
  } catch (const std::exception& error) {
    std::cerr << "ovinta: " << error.what() << "\n";
  }
  return static_cast<int>(ExitCode::failure);
}
