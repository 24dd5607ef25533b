#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ovinta::cli {

/// The command that stands for the help of another.
inline constexpr const char* kHelpCommand = "help";

/// Whether the argument is an option, a short or a long one.
bool isOption(const std::string& argument);

/// The name of an option without the value that may be part of it.
std::string optionName(const std::string& argument);

/// The arguments with the common options that stand before a command, or between a group and its
/// command, moved behind the command, whose options they are; all else stays as it is. Where no
/// command is named they are left out, since that is what is wrong then. `help X` becomes what asks
/// `X` for its help.
std::vector<std::string> inOrder(const CLI::App& root, const std::vector<std::string>& arguments);

}  // namespace ovinta::cli
