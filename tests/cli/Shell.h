#pragma once

#include "tests/support/Command.h"

namespace ovinta::test {

/// Runs a script in bash, with the command under test as `$ovinta`.
inline CommandResult shell(const std::string& script) {
  return runCommand({"/bin/bash", "-c", "ovinta=" OVINTA_COMMAND "\n" + script});
}

}  // namespace ovinta::test
