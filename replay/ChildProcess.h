#pragma once

#include <sys/types.h>
#include <sys/wait.h>

#include <optional>
#include <string>
#include <vector>

namespace ovinta::replay {

/// Where what a child process writes goes.
enum class ChildOutput {
  /// Nowhere. The process is out of the terminal's reach, so that its keys interrupt others only.
  none,
  /// Nowhere, but for the first line on its standard output, which is waited for.
  firstLine,
  /// Where this process writes; it reads what this one does, too.
  shared
};

/// A program that runs beside this process, without a shell and with no signal blocked. It is ended
/// with this object or, whatever happens, with the thread that made it. For one thread.
class ChildProcess {
 public:
  /// `variables` ("NAME=value") take the place of those of this process. A command that cannot be
  /// run ends at once, as in a shell with 126 or 127. Throws `std::system_error` when the system
  /// has no room for a process.
  explicit ChildProcess(const std::vector<std::string>& command,
                        std::vector<std::string> variables = {},
                        ChildOutput output = ChildOutput::none);
  /// Ends the process by SIGTERM, or by SIGKILL if it still runs ten seconds later, and returns
  /// when it has ended.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The first line that the process wrote, without its end; empty where none was asked for or none
  /// came.
  const std::string& firstLine() const { return firstLine_; }

  /// How the process ended, as a shell tells it: its exit status, or 128 and the number of the
  /// signal that ended it; absent while it runs.
  std::optional<int> exitStatus() { return collect(WNOHANG); }
  /// Waits for the end of the process, and answers the same.
  int wait() { return *collect(0); }

 private:
  std::optional<int> collect(int waitOptions);

  pid_t process_ = 0;
  std::string firstLine_;
  std::optional<int> exitStatus_;
};

}  // namespace ovinta::replay
