#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ovinta::cli {

/// Adds an option, or a positional, whose value should not stand in the list of processes: "-" has
/// a line of standard input read, unseen on a terminal, and where an environment variable is named
/// it takes the option's place. Several are read in the order of their adding.
CLI::Option* addSecretOption(CLI::App& command, const std::string& name, std::string& secret,
                             const std::string& description, const std::string& variable = "");

}  // namespace ovinta::cli
