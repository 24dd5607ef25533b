#include "replay/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace ovinta::replay {
namespace {

/// What a shell adds to the number of a signal.
constexpr int kSignalBase = 128;
/// The exit status of a process of which nobody can tell how it ended.
constexpr int kNotKnown = 1;
/// How long a process may take to end by itself.
constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kLookInterval{2};

std::vector<char*> pointers(std::vector<std::string>& texts) {
  // The last pointer stays null, which ends the list.
  std::vector<char*> result(texts.size() + 1);
  std::ranges::transform(texts, result.begin(), [](std::string& text) { return text.data(); });
  return result;
}

/// The variables, and those of this process that are not among them.
std::vector<std::string> environment(std::vector<std::string> variables) {
  const auto given = variables;
  for (char** variable = environ; *variable; ++variable) {
    const std::string_view text = *variable;
    const std::string_view start = text.substr(0, text.find('=') + 1);
    const bool isGiven = std::ranges::any_of(
        given, [start](const std::string& other) { return other.starts_with(start); });
    if (!isGiven) variables.emplace_back(text);
  }
  return variables;
}

struct Pipe {
  Pipe() {
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  }
  ~Pipe() {
    close(ends[0]);
    if (ends[1] >= 0) close(ends[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  std::string readLine() {
    close(std::exchange(ends[1], -1));
    std::string line;
    char character = 0;
    while (read(ends[0], &character, 1) == 1 && character != '\n') line += character;
    return line;
  }

  int ends[2];
};

struct Attributes {
  explicit Attributes(bool isInGroupOfItsOwn) {
    posix_spawnattr_init(&value);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&value, &signals);
    const int group = isInGroupOfItsOwn ? POSIX_SPAWN_SETPGROUP : 0;
    posix_spawnattr_setflags(&value, static_cast<short>(POSIX_SPAWN_SETSIGMASK | group));
  }
  ~Attributes() { posix_spawnattr_destroy(&value); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  posix_spawnattr_t value;
};

struct FileActions {
  FileActions(ChildOutput output, int pipe) {
    posix_spawn_file_actions_init(&value);
    if (output == ChildOutput::shared) return;
    posix_spawn_file_actions_addopen(&value, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    for (const int file : {STDOUT_FILENO, STDERR_FILENO}) {
      posix_spawn_file_actions_addopen(&value, file, "/dev/null", O_WRONLY, 0);
    }
    if (output == ChildOutput::firstLine) {
      posix_spawn_file_actions_adddup2(&value, pipe, STDOUT_FILENO);
    }
  }
  ~FileActions() { posix_spawn_file_actions_destroy(&value); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  posix_spawn_file_actions_t value;
};

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           std::vector<std::string> variables, ChildOutput output) {
  std::vector<std::string> words{"setpriv", "--pdeathsig", "TERM", "--"};
  words.insert(words.end(), command.begin(), command.end());
  auto texts = environment(std::move(variables));
  Pipe pipe;
  const Attributes attributes(output != ChildOutput::shared);
  const FileActions actions(output, pipe.ends[1]);
  const int error = posix_spawnp(&process_, "setpriv", &actions.value, &attributes.value,
                                 pointers(words).data(), pointers(texts).data());
  if (error) throw std::system_error(error, std::generic_category(), words.front());
  if (output == ChildOutput::firstLine) firstLine_ = pipe.readLine();
}

ChildProcess::~ChildProcess() {
  if (exitStatus()) return;
  kill(process_, SIGTERM);
  const auto limit = std::chrono::steady_clock::now() + kPatience;
  while (!exitStatus() && std::chrono::steady_clock::now() < limit) {
    std::this_thread::sleep_for(kLookInterval);
  }
  if (exitStatus()) return;
  kill(process_, SIGKILL);
  wait();
}

std::optional<int> ChildProcess::collect(int waitOptions) {
  if (exitStatus_) return exitStatus_;
  int status = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(process_, &status, waitOptions);
  } while (ended < 0 && errno == EINTR);
  if (ended == 0) return std::nullopt;
  if (ended < 0) {
    // This process ignores its children, and then the system keeps nothing of them.
    exitStatus_ = kNotKnown;
  } else {
    exitStatus_ = WIFSIGNALED(status) ? kSignalBase + WTERMSIG(status) : WEXITSTATUS(status);
  }
  return exitStatus_;
}

}  // namespace ovinta::replay
