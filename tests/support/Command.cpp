#include "tests/support/Command.h"

#include <glib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

namespace ovinta::test {
std::vector<std::string> CommandResult::lines() const {
  std::vector<std::string> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

CommandResult runCommand(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  CommandResult result;
  int status = 0;
  char* output = nullptr;
  const bool isStarted = g_spawn_sync(
      nullptr, argv.data(), nullptr, G_SPAWN_DEFAULT,
      [](gpointer) { dup2(STDOUT_FILENO, STDERR_FILENO); }, nullptr, &output, nullptr, &status,
      nullptr);
  if (!isStarted) throw std::runtime_error("could not start " + arguments.at(0));
  result.output = output;
  g_free(output);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  return result;
}

}  // namespace ovinta::test
