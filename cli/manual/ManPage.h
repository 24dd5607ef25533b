#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ovinta::cli {

/// The manual page, in the language of man(7).
std::string manPage(const CLI::App& root);

}  // namespace ovinta::cli
