#include "platform/FatalError.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace ovinta::platform {

void fatalError(std::string_view message, SourceLocation location) {
  if (!message.empty()) {
    std::string line = "Fatal error: ";
    line.append(message);
    if (!location.file.empty()) {
      line.append(": file ").append(location.file);
      line.append(", line ").append(std::to_string(location.line));
    }
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
  }
  std::abort();
}

}  // namespace ovinta::platform
