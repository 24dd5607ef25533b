#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <system_error>

namespace ovinta::test {
namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  return result;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           std::vector<std::string> variables, std::string* firstLine) {
  std::vector<std::string> words{"setpriv", "--pdeathsig", "TERM"};
  words.insert(words.end(), command.begin(), command.end());
  auto arguments = pointers(words);
  arguments.push_back(nullptr);
  auto environment = pointers(variables);
  for (char** variable = environ; *variable; ++variable) environment.push_back(*variable);
  environment.push_back(nullptr);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
  }
  if (firstLine) posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  const int error =
      posix_spawnp(&process_, "setpriv", &actions, nullptr, arguments.data(), environment.data());
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  char character = 0;
  while (firstLine && read(ends[0], &character, 1) == 1 && character != '\n') {
    *firstLine += character;
  }
  close(ends[0]);
  if (error) throw std::system_error(error, std::generic_category(), command.front());
}

ChildProcess::~ChildProcess() {
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

}  // namespace ovinta::test
