#include "cli/manual/Explanation.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/client/HumanText.h"
#include "cli/manual/Arguments.h"
#include "cli/manual/CommandTree.h"
#include "cli/manual/Suggestions.h"

namespace ovinta::cli {
namespace {

/// The command that was named last.
const CLI::App& lastNamed(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app : lastNamed(*commands.back());
}

/// Whether words stand where a command is to be named.
bool lacksCommand(const CLI::App& command) { return !visibleCommands(command).empty(); }

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
  return unknown;
}

/// What may have been meant by the first argument that nobody takes, of those that can be shown.
std::vector<std::string> meant(const std::vector<std::string>& shown, const CLI::App& command) {
  if (shown.empty()) return choicesLike(command);
  if (isOption(shown.front())) return optionsLike(shown.front(), command);
  return lacksCommand(command) ? commandsLike(shown.front(), command) : std::vector<std::string>();
}

std::string question(const std::vector<std::string>& names) {
  return names.empty() ? "" : "Did you mean \"" + join(names, "\" or \"") + "\"?\n";
}

std::string commandList(const CLI::App& group) {
  constexpr std::size_t kGap = 2;
  std::size_t width = 0;
  for (const CLI::App* command : visibleCommands(group)) {
    width = std::max(width, command->get_name().size() + kGap);
  }
  std::string text = "\nSubcommands:\n";
  for (const CLI::App* command : visibleCommands(group)) {
    std::string name = command->get_name();
    name.resize(width, ' ');
    text += "  " + name + command->get_description() + "\n";
  }
  return text;
}

}  // namespace

ExitCode explain(const CLI::App& app, const CLI::ParseError& error) {
  auto unknown = app.remaining(true);
  // The mark alone is nothing that somebody would have to know.
  if (std::ranges::all_of(unknown, [](const auto& word) { return word == "--"; })) unknown.clear();
  const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
  const CLI::App& command = lastNamed(app);
  const bool isMissing = code == CLI::ExitCodes::RequiredError;
  // A word that nobody knows is the cause of what is missing, and what follows an option that
  // nobody knows was meant to be its value, wherever it is found to be wrong.
  const bool isCause =
      code != CLI::ExitCodes::Success && !unknown.empty() &&
      (isMissing || code == CLI::ExitCodes::ExtrasError || std::ranges::any_of(unknown, isOption));
  const auto shown =
      isCause ? showable(unknown, lacksCommand(command)) : std::vector<std::string>();
  std::ostringstream complaint;
  // The parser tells the arguments from the last to the first.
  const bool isHelp =
      app.exit(isCause ? CLI::ExtrasError(std::vector(shown.rbegin(), shown.rend())) : error,
               std::cout, complaint) == 0;
  if (isHelp) return ExitCode::success;
  const bool isBare = isMissing && !isCause && lacksCommand(command);
  std::cerr << visibleText(
      complaint.str() + question(meant(shown, command)) + (isBare ? commandList(command) : ""),
      true);
  return ExitCode::wrongUsage;
}

}  // namespace ovinta::cli
