#pragma once

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "platform/Log.h"

namespace ovinta::platform::linux {

/// Opens a database in write-ahead mode, making the file (mode 0600) and its directory (mode 0700)
/// where they are missing. A statement that meets another writer waits up to `busyTimeout`. The
/// connection is for one thread at a time. Throws `SQLite::Exception`, or `std::system_error` when
/// the file system refuses.
std::unique_ptr<SQLite::Database> openSQLiteFile(const std::filesystem::path& file,
                                                 std::chrono::milliseconds busyTimeout);

/// Whether the file itself is at fault: damaged, no database, or one of other tables.
bool isDamage(const SQLite::Exception& error);

/// Renames a damaged database, and what belongs to it, to `<name>.corrupt-<n>` with the first free
/// number, and returns the new path. Throws `std::system_error`.
std::filesystem::path setAsideSQLiteFile(const std::filesystem::path& file);

/// Calls `open`, which opens the file and throws `SQLite::Exception`. Where the file turns out to
/// be damaged it is set aside, of which the log tells under the name, `forget` is called, and then
/// `open` again. Other processes that do the same at the same time do it once.
void openOrRebuildSQLiteFile(
    const std::filesystem::path& file, const char* name, Log& log,
    const std::function<void()>& open, const std::function<void()>& forget = [] {});

/// Keeps other processes, and other threads, that take the same lock out for as long as it lives.
/// Works as well as it can: without the directory it locks nothing.
class DirectoryLock {
 public:
  explicit DirectoryLock(const std::filesystem::path& directory);
  ~DirectoryLock();
  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace ovinta::platform::linux
