#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ovinta::cli {

// What the completions of shells have in common that tell cases by patterns.

/// The names with slashes before them; empty for the root.
std::string pathOf(const std::vector<std::string>& names);

/// A case for each option of the command that takes a value: the pattern of path and name, and what
/// `completion` makes of the option.
std::string valueCases(const std::string& path, const CLI::App& command,
                       std::string (*completion)(const CLI::Option& option));

}  // namespace ovinta::cli
