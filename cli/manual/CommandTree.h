#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace ovinta::cli {

// What the definitions of commands and options say, for those who write about them.

/// The sub-commands that are shown, in the order of their adding.
std::vector<const CLI::App*> visibleCommands(const CLI::App& command);

/// Groups of the command's options, which stand by themselves.
std::vector<const CLI::App*> optionGroups(const CLI::App& command);

/// The command's positionals and options, those in option groups included.
std::vector<const CLI::Option*> allOptions(const CLI::App& command);

/// Calls `visit` with the names that lead to each visible command below the root, groups before
/// what is in them.
void forEachCommand(
    const CLI::App& root,
    const std::function<void(const std::vector<std::string>& names, const CLI::App&)>& visit);

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
