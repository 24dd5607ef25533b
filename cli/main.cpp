#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <utility>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/ExitCode.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "cli/device/Interruption.h"
#include "cli/manual/Arguments.h"
#include "cli/manual/Explanation.h"
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

/// Has each command take the variables for itself alone: what one of them holds is neither checked
/// nor read for a command that was not named.
void takeVariablesApart(CLI::App& group) {
  // What has no name is a group of a command's options.
  const auto commands =
      group.get_subcommands([](const CLI::App* child) { return !child->get_name().empty(); });
  // Only what completes its parsing by itself does that.
  if (commands.empty()) group.parse_complete_callback([] {});
  for (CLI::App* command : commands) takeVariablesApart(*command);
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
  addMerchantCommands(app, exitCode);
  addManualCommands(app);
  takeVariablesApart(app);
  // The commands have taken over what was said before.
  app.footer(footer() + "\n\nThe common options of a command may stand before it, too.");
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

int run(int argc, char** argv) {
  CLI::App app("Pickup of orders, from the shell", "ovinta");
  int exitCode = 0;
  addCommands(app, exitCode);
  try {
    const std::span words(argv, static_cast<std::size_t>(argc));
    refuseOtherThanUTF8(words);
    auto arguments = inOrder(app, {words.begin() + 1, words.end()});
    // The parser takes them from the last to the first.
    std::ranges::reverse(arguments);
    app.parse(std::move(arguments));
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
