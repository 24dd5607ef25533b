#include "platform/linux/storage/PrivateDirectory.h"

#include <pwd.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdlib>
#include <vector>

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnersDirectory = 0700;

std::error_code lastError() { return {errno, std::generic_category()}; }

/// Relative paths do not count, as the base directory convention demands.
std::optional<fs::path> directoryFromEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  if (!value || !fs::path(value).is_absolute()) return std::nullopt;
  return fs::path(value);
}

std::optional<fs::path> homeFromUserDatabase() {
  std::vector<char> buffer(16 * 1024);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) {
    return std::nullopt;
  }
  const fs::path home = entry.pw_dir ? entry.pw_dir : "";
  std::error_code error;
  if (!home.is_absolute() || !fs::is_directory(home, error)) return std::nullopt;
  return home;
}

}  // namespace

fs::path executablePath(const fs::path& link) {
  std::error_code error;
  auto path = fs::read_symlink(link, error);
  if (!error) return path;
  const auto* const name = std::bit_cast<const char*>(getauxval(AT_EXECFN));
  path = fs::canonical(name ? name : "", error);
  return error ? fs::path() : path;
}

std::optional<fs::path> defaultDataDirectory(std::string_view applicationID) {
  auto base = directoryFromEnvironment("XDG_DATA_HOME");
  if (!base) {
    auto home = directoryFromEnvironment("HOME");
    if (!home) home = homeFromUserDatabase();
    if (!home) return std::nullopt;
    base = *home / ".local" / "share";
  }
  // The identifier is one component of a path and must stay one.
  std::string name(applicationID);
  std::ranges::replace(name, '/', '_');
  if (name.empty() || name == "." || name == "..") name = "application";
  return *base / name / "OvintaSDK";
}

std::error_code preparePrivateDirectory(const fs::path& directory) {
  const auto target = directory.has_filename() ? directory : directory.parent_path();
  fs::path prefix;
  for (const auto& component : target) {
    prefix /= component;
    if (mkdir(prefix.c_str(), kOwnersDirectory) == 0) {
      if (chmod(prefix.c_str(), kOwnersDirectory) != 0) return lastError();
    } else if (errno != EEXIST) {
      return lastError();
    }
  }
  struct stat status {};
  if (lstat(target.c_str(), &status) != 0) return lastError();
  if (!S_ISDIR(status.st_mode)) return std::make_error_code(std::errc::not_a_directory);
  if (status.st_uid != geteuid() && geteuid() != 0) {
    return std::make_error_code(std::errc::operation_not_permitted);
  }
  const mode_t mode = status.st_mode & 07777;
  if ((mode & ~kOwnersDirectory) != 0 && chmod(target.c_str(), mode & kOwnersDirectory) != 0) {
    return lastError();
  }
  return {};
}

}  // namespace ovinta::platform::linuxos
