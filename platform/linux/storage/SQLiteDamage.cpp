#include "platform/linux/storage/SQLiteDamage.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/storage/SQLiteFile.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr const char* kAsideMark = ".corrupt-";

/// How long a look at a locked file may take: it is short, because a person waits for it.
constexpr std::chrono::milliseconds kLookTimeout{500};

/// Keeps other processes, and other threads, that take the same lock out for as long as it lives.
/// It works as well as it can: without the directory it locks nothing.
class DirectoryLock {
 public:
  explicit DirectoryLock(const fs::path& directory)
      : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (descriptor_ >= 0 && flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  ~DirectoryLock() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;

 private:
  int descriptor_;
};

/// The error in SQLite's words for its code alone: those for the case may quote what a damaged file
/// holds.
std::string textOf(const SQLite::Exception& error) { return sqlite3_errstr(error.getErrorCode()); }

}  // namespace

bool isDamage(const SQLite::Exception& error) {
  const int code = error.getErrorCode();
  return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

void throwIfDamaged(SQLite::Database& database) {
  const std::string answer = database.execAndGet("PRAGMA quick_check(1)").getString();
  if (answer != "ok") throw SQLite::Exception(answer, SQLITE_CORRUPT);
}

fs::path setAsideSQLiteFile(const fs::path& file) {
  fs::path target;
  for (int number = 1;; ++number) {
    target = fs::path(file).concat(kAsideMark + std::to_string(number));
    if (!fs::exists(fs::symlink_status(target))) break;
  }
  // The database is moved first: should the process end here, SQLite drops what is left of one that
  // is gone.
  for (const auto* suffix : kSQLiteSuffixes) {
    const auto from = fs::path(file).concat(suffix);
    if (fs::exists(fs::symlink_status(from))) fs::rename(from, fs::path(target).concat(suffix));
  }
  return target;
}

std::error_code removeSetAsideFiles(const fs::path& file) {
  const std::string mark = file.filename().string() + kAsideMark;
  std::error_code error;
  std::error_code failure;
  fs::directory_iterator entry(file.parent_path(), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code removal;
    if (entry->path().filename().string().starts_with(mark)) fs::remove(entry->path(), removal);
    if (removal) failure = removal;
  }
  if (error == std::errc::no_such_file_or_directory) error.clear();
  return error ? error : failure;
}

void openOrRebuildSQLiteFile(const fs::path& file, const char* name, Log& log,
                             const std::function<void()>& open,
                             const std::function<void()>& forget) {
  bool isTold = false;
  const auto openWhenUnlocked = [&] {
    while (true) {
      try {
        return open();
      } catch (const SQLite::Exception& error) {
        if (error.getErrorCode() != SQLITE_BUSY) throw;
        if (isTold) continue;
        isTold = true;
        log.write("Another process has locked the file of " + std::string(name) +
                  "; waiting until it is free");
      }
    }
  };
  try {
    return openWhenUnlocked();
  } catch (const SQLite::Exception& error) {
    if (!isDamage(error)) throw;
  }
  const DirectoryLock lock(file.parent_path());
  try {
    return openWhenUnlocked();  // Another process may have rebuilt it meanwhile.
  } catch (const SQLite::Exception& error) {
    if (!isDamage(error)) throw;
    const auto aside = setAsideSQLiteFile(file);
    log.write("The file of " + std::string(name) + " is damaged (" + textOf(error) +
              ") and was set aside as " + aside.filename().string());
  }
  forget();
  openWhenUnlocked();
}

std::optional<SQLiteProblem> problemOfSQLiteFile(const fs::path& file) {
  std::error_code error;
  if (!fs::exists(fs::symlink_status(file, error))) return std::nullopt;
  try {
    throwIfDamaged(*openSQLiteFile(file, kLookTimeout));
  } catch (const SQLite::Exception& failure) {
    if (isDamage(failure)) {
      return SQLiteProblem{textOf(failure), "Move the file out of " + file.parent_path().string() +
                                                ": what it holds is lost."};
    }
    const int code = failure.getErrorCode();
    if (code == SQLITE_SCHEMA)
      return SQLiteProblem{failure.what(), "Use the app's newest version."};
    if (code == SQLITE_BUSY) {
      return SQLiteProblem{failure.what(), "End what else uses the file.", true};
    }
    return SQLiteProblem{failure.what(), "See to the disk that holds the file."};
  } catch (const std::exception& failure) {
    return SQLiteProblem{failure.what(), "Give the app's user the file to read and write."};
  }
  return std::nullopt;
}

}  // namespace ovinta::platform::linuxos
