#pragma once

#include <string>
#include <vector>

namespace ovinta::test {

/// How a command ended.
struct CommandResult {
  /// -1 when a signal ended it.
  int exitCode = -1;
  /// What it wrote to standard output and standard error.
  std::string output;

  std::vector<std::string> lines() const;
};

/// Runs a program with arguments to its end, without a shell. Throws when there is no such program.
CommandResult runCommand(const std::vector<std::string>& arguments);

}  // namespace ovinta::test
