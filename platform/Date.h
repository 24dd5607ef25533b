#pragma once

#include <chrono>

namespace ovinta::platform {

/// An instant: microseconds since 1970-01-01T00:00:00Z, leap seconds not counted.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// A span of time between two instants.
using TimeInterval = std::chrono::microseconds;

/// Earlier than any instant that occurs: 0001-01-01T00:00:00Z.
inline constexpr Date kDistantPast{std::chrono::sys_days{std::chrono::year{1} / 1 / 1}};

}  // namespace ovinta::platform
