#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ovinta::cli {

/// Has the option's value read from standard input for "-", or taken from the variable, if any.
CLI::Option* keepSecret(CLI::Option* option, const std::string& variable);

/// Adds an option, or a positional, whose value should not stand in the list of processes: "-" has
/// a line of standard input read, unseen on a terminal, and where an environment variable is named
/// it takes the option's place. Several are read in the order of their adding.
template <class Holder>
CLI::Option* addSecretOption(CLI::App& command, const std::string& name, Holder& secret,
                             const std::string& description, const std::string& variable = "") {
  return keepSecret(
      command.add_option(name, secret, description + "; \"-\": read from standard input"),
      variable);
}

}  // namespace ovinta::cli
