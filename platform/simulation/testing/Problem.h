#pragma once

#include <functional>
#include <string>

#include "../../FatalError.h"

namespace ovinta::platform::simulation {

/// What a test case finds wrong. A plain value.
struct Problem {
  /// Lines for people, without a newline at the end.
  std::string text;
  /// Where the case says what it expects instead; without a file where it says nothing.
  SourceLocation place = {};
};

/// Is told of a problem, on the thread that finds it; must not throw.
using ProblemReporter = std::function<void(const Problem&)>;

}  // namespace ovinta::platform::simulation
