#pragma once

#include <string_view>

namespace ovinta {

/// Writes one line to the platform's log. May be called from any thread.
void logLine(std::string_view line);

}  // namespace ovinta
