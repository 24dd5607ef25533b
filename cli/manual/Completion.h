#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <string>
#include <string_view>

namespace ovinta::cli {

// Each makes a script with which a shell completes commands, options and their values.
std::string bashCompletion(const CLI::App& root);
std::string zshCompletion(const CLI::App& root);
std::string fishCompletion(const CLI::App& root);

struct ShellCompletion {
  std::string_view shell;
  std::string (*script)(const CLI::App& root);
};

/// All shells that there is a completion for.
inline constexpr std::array<ShellCompletion, 3> kShellCompletions{{
    {"bash", bashCompletion},
    {"zsh", zshCompletion},
    {"fish", fishCompletion},
}};

}  // namespace ovinta::cli
