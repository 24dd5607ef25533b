#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace ovinta::test {

/// A program that runs beside the test, without a shell and without output. It is ended with this
/// object or, whatever happens, with this process.
class ChildProcess {
 public:
  /// `variables` ("NAME=value") come before those of this process. `firstLine`: where to put the
  /// first line that the program writes, which is waited for.
  ChildProcess(const std::vector<std::string>& command, std::vector<std::string> variables,
               std::string* firstLine = nullptr);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

 private:
  pid_t process_ = 0;
};

}  // namespace ovinta::test
