#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {

/// The application's identifier as the options or the executable's name say.
std::string applicationIDOf(const Options& options);

/// The address of the system's bus as the options or the environment say.
std::string systemBusAddressOf(const Options& options);

/// The data directory as the options or the user's home say; absolute, so that a later change of
/// the working directory moves nothing, unless it is relative to a working directory that is gone.
/// Absent for a user without a home.
std::optional<std::filesystem::path> dataDirectoryOf(const Options& options);

/// The directory of the application's resources as the options or the executable's place say,
/// absolute; empty when there is none.
std::filesystem::path mainBundleDirectoryOf(const Options& options);

}  // namespace ovinta::platform::linuxos
