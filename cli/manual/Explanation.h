#pragma once

#include <CLI/CLI.hpp>

#include "cli/client/ExitCode.h"

namespace ovinta::cli {

/// Prints what is wrong with the usage, what may have been meant, and which commands there are
/// where one is missing; or what was asked for in place of a command.
ExitCode explain(const CLI::App& app, const CLI::ParseError& error);

}  // namespace ovinta::cli
