#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace ovinta::cli {

// What the definitions of commands and options say, for those who write about them.

/// The sub-commands that are shown, in the order of their adding.
std::vector<const CLI::App*> visibleCommands(const CLI::App& command);

/// The sub-command of that name that is shown; null when there is none.
const CLI::App* findCommand(const CLI::App& command, const std::string& name);

/// Groups of the command's options, which stand by themselves.
std::vector<const CLI::App*> optionGroups(const CLI::App& command);

/// The command's positionals and options, those in option groups included.
std::vector<const CLI::Option*> allOptions(const CLI::App& command);

/// The common options of the commands below a group, each once.
std::vector<const CLI::Option*> commonOptions(const CLI::App& group);

/// Calls `visit` with the names that lead to each visible command below the root, groups before
/// what is in them.
void forEachCommand(
    const CLI::App& root,
    const std::function<void(const std::vector<std::string>& names, const CLI::App&)>& visit);

/// The same for the root too, whose names are none, before all others.
void forEachPlace(
    const CLI::App& root,
    const std::function<void(const std::vector<std::string>& names, const CLI::App&)>& visit);

/// The options that may follow the command's name, those of the commands below that may stand
/// before them included.
std::vector<const CLI::Option*> offeredOptions(const CLI::App& command);

/// A word that may follow a command, and what it is.
struct Offer {
  std::string word;
  std::string description;
};
/// The sub-commands, the choices of positionals and the names of options that may come next.
std::vector<Offer> offers(const CLI::App& command);

/// "-" and "--" names, short ones first.
std::vector<std::string> namesOf(const CLI::Option& option);

bool takesValue(const CLI::Option& option);

/// What the value is called: its type, e.g. "TEXT", "FILE" or "DIR".
std::string valueName(const CLI::Option& option);

/// The values that are allowed where they are a few; otherwise empty.
std::vector<std::string> choicesOf(const CLI::Option& option);

/// The texts with the separator between them.
std::string join(const std::vector<std::string>& texts, const std::string& separator);

}  // namespace ovinta::cli
