#include "platform/linux/SQLiteFile.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <string>
#include <system_error>

#include "platform/linux/PrivateDirectory.h"

namespace ovinta::platform::linux {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = 0600;
constexpr std::array kCompanions = {"", "-wal", "-shm"};

fs::path withSuffix(fs::path path, std::string_view suffix) { return path.concat(suffix); }

[[noreturn]] void throwLastError(const char* action) {
  throw std::system_error(errno, std::generic_category(), action);
}

/// False when the file exists already.
bool makeEmptyFile(const fs::path& file) {
  const int descriptor =
      open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly);
  if (descriptor < 0) {
    if (errno == EEXIST) return false;
    throwLastError("Cannot make the file");
  }
  // The process's file mode mask may have taken more away than it should.
  const bool changed = fchmod(descriptor, kOwnerOnly) == 0;
  close(descriptor);
  if (!changed) throwLastError("Cannot make the file private");
  return true;
}

/// Closes the files to other users and makes sure that this one can write; SQLite would silently
/// open a file that it cannot write for reading only.
void checkExistingFile(const fs::path& file) {
  for (const auto* suffix : kCompanions) {
    const auto path = withSuffix(file, suffix);
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) continue;
    if (!S_ISREG(status.st_mode)) {
      throw std::system_error(EINVAL, std::generic_category(), "Not a regular file");
    }
    const mode_t mode = status.st_mode & 07777;
    if ((mode & ~kOwnerOnly) != 0) chmod(path.c_str(), mode & kOwnerOnly);
  }
  if (faccessat(AT_FDCWD, file.c_str(), R_OK | W_OK, AT_EACCESS) != 0) {
    throwLastError("Cannot write the file");
  }
}

/// While another process makes the same change SQLite refuses at once, without the wait that other
/// statements have; so wait for the other's transaction and try again.
void switchToWriteAheadLog(SQLite::Database& database) {
  constexpr int kAttempts = 20;
  for (int attempt = 1;; ++attempt) {
    try {
      database.exec("PRAGMA journal_mode = WAL");
      return;
    } catch (const SQLite::Exception& error) {
      if (error.getErrorCode() != SQLITE_BUSY || attempt == kAttempts) throw;
    }
    database.exec("BEGIN IMMEDIATE; ROLLBACK");
  }
}

}  // namespace

std::unique_ptr<SQLite::Database> openSQLiteFile(const fs::path& file,
                                                 std::chrono::milliseconds busyTimeout) {
  // Closing any descriptor of a file drops all locks that the process holds on it, those of its
  // database connections too. So the file is made while nobody in this process can have it open.
  static std::mutex making;
  const std::lock_guard lock(making);
  const auto directory = file.parent_path();
  if (const auto error = preparePrivateDirectory(directory)) {
    throw std::system_error(error, "Cannot make the directory");
  }
  if (!makeEmptyFile(file)) checkExistingFile(file);
  // Without links in the path SQLite can be told to follow none.
  const auto path = fs::canonical(directory) / file.filename();
  auto database = std::make_unique<SQLite::Database>(
      path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | SQLite::OPEN_NOFOLLOW,
      static_cast<int>(busyTimeout.count()));
  switchToWriteAheadLog(*database);
  return database;
}

bool isDamage(const SQLite::Exception& error) {
  const int code = error.getErrorCode();
  return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
}

fs::path setAsideSQLiteFile(const fs::path& file) {
  fs::path target;
  for (int number = 1;; ++number) {
    target = withSuffix(file, ".corrupt-" + std::to_string(number));
    if (!fs::exists(fs::symlink_status(target))) break;
  }
  for (const auto* suffix : kCompanions) {
    const auto from = withSuffix(file, suffix);
    if (fs::exists(fs::symlink_status(from))) fs::rename(from, withSuffix(target, suffix));
  }
  return target;
}

void openOrRebuildSQLiteFile(const fs::path& file, const char* name, Log& log,
                             const std::function<void()>& open,
                             const std::function<void()>& forget) {
  try {
    return open();
  } catch (const SQLite::Exception& error) {
    if (!isDamage(error)) throw;
  }
  const DirectoryLock lock(file.parent_path());
  try {
    return open();  // Another process may have rebuilt it meanwhile.
  } catch (const SQLite::Exception& error) {
    if (!isDamage(error)) throw;
    const auto aside = setAsideSQLiteFile(file);
    log.write("The file of " + std::string(name) + " is damaged (" + error.what() +
              ") and was set aside as " + aside.filename().string());
  }
  forget();
  open();
}

DirectoryLock::DirectoryLock(const fs::path& directory)
    : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  while (descriptor_ >= 0 && flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

DirectoryLock::~DirectoryLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace ovinta::platform::linux
