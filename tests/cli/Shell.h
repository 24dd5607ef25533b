#pragma once

#include "tests/support/Command.h"

namespace ovinta::test {

/// Runs a script in bash, with the command under test as `$ovinta`, and `spoil DIRECTORY`, which
/// has nothing more kept of the settings there. It makes no file shorter: a process that has
/// SQLite's index mapped would end with SIGBUS.
inline CommandResult shell(const std::string& script) {
  return runCommand({"/bin/bash", "-c", "ovinta=" OVINTA_COMMAND R"bash(
spoil() {
  for file in $1/Settings.sqlite*; do head -c 9000 /dev/zero | dd of=$file conv=notrunc status=none; done
  mkdir $1/Settings.sqlite-journal
}
)bash" + script});
}

}  // namespace ovinta::test
