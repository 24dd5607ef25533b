#pragma once

#include <string_view>

#include "Export.h"

namespace ovinta::platform {

/// The place in the sources that a fatal error names. A plain value.
struct SourceLocation {
  /// The file, empty for no place at all, and the line, counted from 1.
  std::string_view file;
  int line = 0;
};

/// Ends the process for a programming error that nothing can recover from: writes one line, made of
/// message and location, to standard error and aborts. An empty message writes nothing. May be
/// called from any thread.
OVINTA_EXPORT [[noreturn]] void fatalError(std::string_view message = {},
                                           SourceLocation location = {});

}  // namespace ovinta::platform
