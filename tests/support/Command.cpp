#include "tests/support/Command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>

namespace ovinta::test {
namespace {

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t size; (size = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return text;
}

}  // namespace

std::vector<std::string> CommandResult::lines() const {
  std::vector<std::string> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

CommandResult runCommand(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  CommandResult result;
  pid_t process = -1;
  const int failure =
      ::posix_spawn(&process, argv.front(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  if (failure == 0) {
    result.output = readAll(ends[0]);
    int status = 0;
    ::waitpid(process, &status, 0);
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  }
  ::close(ends[0]);
  return result;
}

}  // namespace ovinta::test
