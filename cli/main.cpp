#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/ExitCode.h"
#include "cli/client/HumanText.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
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

bool isOption(const std::string& argument) {
  return argument.size() > 1 && argument.starts_with('-');
}

/// Whether words stand where a command has to be named.
bool lacksCommand(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app.get_require_subcommand_min() > 0 : lacksCommand(*commands.back());
}

/// The name of an option without the value that may be part of it.
std::string optionName(const std::string& argument) {
  return argument.substr(0, argument.starts_with("--") ? argument.find('=') : 2);
}

/// The arguments that nobody takes, without what may be a secret: the values of options, whatever
/// they look like, and all words but the one that stands for a command.
std::vector<std::string> showable(std::vector<std::string> unknown, bool isCommandMissing) {
  bool isValue = false;
  for (std::string& argument : unknown) {
    const bool isCommand = isCommandMissing && &argument == &unknown.front();
    // The mark `--` makes words of all that follow.
    if (!isValue && isOption(argument)) {
      isValue = argument.find('=') == std::string::npos;
      argument = optionName(argument);
    } else if (!isCommand || isOption(argument)) {
      isValue = argument == "--";
      argument = "(not shown)";
    }
  }
  // The parser tells them from the last to the first.
  std::ranges::reverse(unknown);
  return unknown;
}

/// Prints what is wrong with the usage, or what was asked for instead of a command.
ExitCode explain(const CLI::App& app, const CLI::ParseError& error) {
  const auto unknown = app.remaining(true);
  const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
  const bool isMissing = code == CLI::ExitCodes::RequiredError;
  // A word that nobody knows is the cause of what is missing, and what follows an option that
  // nobody knows was meant to be its value, wherever it is found to be wrong.
  const bool isCause =
      code != CLI::ExitCodes::Success && !unknown.empty() &&
      (isMissing || code == CLI::ExitCodes::ExtrasError || std::ranges::any_of(unknown, isOption));
  std::ostringstream complaint;
  const bool isHelp =
      app.exit(isCause ? CLI::ExtrasError(showable(unknown, lacksCommand(app))) : error, std::cout,
               complaint) == 0;
  std::cerr << visibleText(complaint.str(), true);
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
  } catch (const std::exception& error) {
    complain(std::string("ovinta: ") + error.what());
    return static_cast<int>(ExitCode::failure);
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
    ovinta::cli::complain("ovinta: the output could not be written");
  } catch (const std::exception&) {
    std::cerr << "ovinta: what went wrong cannot be said\n";
  }
  return static_cast<int>(ExitCode::failure);
}
