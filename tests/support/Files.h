#pragma once

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace ovinta::test {

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// The permission bits of the file itself, links not followed; 0 when there is none.
inline unsigned modeOf(const std::filesystem::path& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// Runs the function in a child process, which ends by `_exit` without any clean-up.
inline pid_t forkChild(const std::function<void()>& function) {
  const pid_t child = fork();
  if (child == 0) {
    function();
    _exit(0);
  }
  return child;
}

/// Waits for the child's end and returns its status as `waitpid` gives it.
inline int waitFor(pid_t child) {
  int status = -1;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace ovinta::test
