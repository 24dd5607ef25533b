#pragma once

#include <functional>
#include <optional>
#include <string>

namespace twins {

// Objective-C++ functions cannot catch C++ exceptions under every runtime: with GCC's, a `catch` in
// one ends the process. So all catching is done by these two, which are plain C++.

/// Runs the call; answers what the C++ exception that left it said, or absent. Exceptions of the
/// object language pass.
std::optional<std::string> standardException(const std::function<void()>& call);

/// Runs the call; answers what was thrown out of it, of whatever kind, or absent.
std::optional<std::string> anyException(const std::function<void()>& call) noexcept;

}  // namespace twins
