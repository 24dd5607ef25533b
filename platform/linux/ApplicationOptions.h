#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linux {

/// The application's identifier as the options or the executable's name say.
std::string applicationIDOf(const Options& options);

/// The address of the system's bus as the options or the environment say.
std::string systemBusAddressOf(const Options& options);

/// The data directory as the options or the user's home say; absolute, so that a later change of
/// the working directory moves nothing. Absent for a user without a home.
std::optional<std::filesystem::path> dataDirectoryOf(const Options& options);

}  // namespace ovinta::platform::linux
