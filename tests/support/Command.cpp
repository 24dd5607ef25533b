#include "tests/support/Command.h"

#include <glibmm/spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>

namespace ovinta::test {
std::vector<std::string> CommandResult::lines() const {
  std::vector<std::string> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

CommandResult runCommand(const std::vector<std::string>& arguments) {
  CommandResult result;
  int status = 0;
  Glib::spawn_sync(
      "", arguments, Glib::SpawnFlags::DEFAULT, [] { dup2(STDOUT_FILENO, STDERR_FILENO); },
      &result.output, nullptr, &status);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  return result;
}

}  // namespace ovinta::test
