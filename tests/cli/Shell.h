#pragma once

#include "tests/support/Command.h"

namespace ovinta::test {

/// Runs a script in bash, with the command under test as `$ovinta`, and `spoil DIRECTORY`, which
/// has nothing more kept of the settings there, also by a process that has them open. It holds the
/// lock meanwhile, since a write that is under way would mend what it does; and it makes no file
/// shorter, since a process that has SQLite's index mapped would end with SIGBUS.
inline CommandResult shell(const std::string& script) {
  return runCommand({"/bin/bash", "-c", "ovinta=" OVINTA_COMMAND R"bash(
spoil() {
  python3 - "$1/Settings.sqlite" <<'PYTHON'
import glob, os, sqlite3, sys
store = sqlite3.connect(sys.argv[1], timeout=60)
store.execute("BEGIN IMMEDIATE")
# To close one of them would end the lock.
for file in [os.open(path, os.O_WRONLY) for path in glob.glob(sys.argv[1] + "*")]:
    os.write(file, bytes(9000))
os._exit(0)
PYTHON
  mkdir $1/Settings.sqlite-journal
}
)bash" + script});
}

}  // namespace ovinta::test
