#pragma once

#include <array>
#include <string_view>

namespace ovinta::cli {

/// The exit codes of the command.
enum class ExitCode { success = 0, failure = 1, wrongUsage = 2, noCallback = 3 };

struct ExitCodeMeaning {
  ExitCode code;
  std::string_view meaning;
};

inline constexpr std::array<ExitCodeMeaning, 4> kExitCodes{{
    {ExitCode::success, "success"},
    {ExitCode::failure,
     "the operation failed, and standard error says why; or `doctor` has found something missing"},
    {ExitCode::wrongUsage, "wrong usage"},
    {ExitCode::noCallback, "the library never calls back, by design; standard error says why"},
}};

/// Added to the number of a signal that has ended the process, as a shell does.
inline constexpr int kSignalBase = 128;
inline constexpr std::string_view kSignalHeading = "128+N";
inline constexpr std::string_view kSignalMeaning = "signal N ended it, such as 130 for SIGINT";

}  // namespace ovinta::cli
