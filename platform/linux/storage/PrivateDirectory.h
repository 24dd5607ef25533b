#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace ovinta::platform::linuxos {

/// The running program's own file, which `link` leads to; where there is no such link, as without
/// `/proc`, the file under the name by which the program was started. Empty when neither tells.
std::filesystem::path executablePath(const std::filesystem::path& link = "/proc/self/exe");

/// Where this user's data of the application belong: below `$XDG_DATA_HOME`, or `.local/share` in
/// the home directory that `$HOME` or else the user database names. Absent for a user without a
/// home.
std::optional<std::filesystem::path> defaultDataDirectory(std::string_view applicationID);

/// Makes the directory and those above it where they are missing, with mode 0700 whatever the
/// process's file mode mask. An existing one is closed to other users. A symbolic link, anything
/// else that is no directory, and a directory of another user are refused.
std::error_code preparePrivateDirectory(const std::filesystem::path& directory);

}  // namespace ovinta::platform::linuxos
