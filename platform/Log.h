#pragma once

#include <string_view>

namespace ovinta::platform {

/// The line-oriented log of the system. There are no levels. May be used from any thread. An
/// application that wants silence, or the lines elsewhere, installs a log of its own, such as
/// `portable::makeLog` makes of a function.
class Log {
 public:
  virtual ~Log() = default;

  /// Writes one line; `line` carries no newline of its own. Lines of several threads do not mix.
  /// Returns after the line was handed over; a failure to write is dropped.
  virtual void write(std::string_view line) = 0;
};

}  // namespace ovinta::platform
