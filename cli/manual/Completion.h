#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ovinta::cli {

/// A script with which bash completes commands, options and their values.
std::string bashCompletion(const CLI::App& root);

}  // namespace ovinta::cli
