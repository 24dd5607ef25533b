#include "platform/linux/storage/SQLiteFile.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <string>
#include <system_error>

#include "platform/linux/storage/PrivateDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnersFile = 0600;

/// The version of the library's tables, the same in each of its files; to be raised when one of
/// them changes.
constexpr int kVersion = 1;

[[noreturn]] void throwLastError(const char* action) {
  throw std::system_error(errno, std::generic_category(), action);
}

/// Throws for a relative path. The options' directory is made absolute where there is anything that
/// it can be relative to.
void refuseRelative(const fs::path& file) {
  if (file.is_absolute()) return;
  throw std::system_error(ENOENT, std::generic_category(),
                          "The data directory is relative to a working directory that is gone");
}

/// The path with the links of its directories followed, so that SQLite can be told to follow none.
fs::path withoutLinks(const fs::path& file) {
  return fs::canonical(file.parent_path()) / file.filename();
}

/// Makes an empty file; false when the file exists already.
bool makeEmptyFile(const fs::path& file) {
  // Closing any descriptor of a file drops all locks that the process holds on it, those of its
  // database connections too. So the file is made while nobody in this process can have it open.
  static std::mutex making;
  const std::lock_guard lock(making);
  const int descriptor =
      open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, kOwnersFile);
  if (descriptor < 0) {
    if (errno == EEXIST) return false;
    throwLastError("Cannot make the file");
  }
  // The process's file mode mask may have taken more away than it should.
  const bool changed = fchmod(descriptor, kOwnersFile) == 0;
  close(descriptor);
  if (!changed) throwLastError("Cannot make the file private");
  return true;
}

/// Closes the files to other users and makes sure that this one can write; SQLite would silently
/// open a file that it cannot write for reading only.
void checkExistingFile(const fs::path& file) {
  for (const auto* suffix : kSQLiteSuffixes) {
    const auto path = fs::path(file).concat(suffix);
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) continue;
    if (!S_ISREG(status.st_mode)) {
      throw std::system_error(EINVAL, std::generic_category(), "Not a regular file");
    }
    const mode_t mode = status.st_mode & 07777;
    if ((mode & ~kOwnersFile) == 0 || chmod(path.c_str(), mode & kOwnersFile) == 0) continue;
    // Another process may have been the last to close the database meanwhile.
    if (errno != ENOENT) throwLastError("Cannot make the file private");
  }
  if (faccessat(AT_FDCWD, file.c_str(), R_OK | W_OK, AT_EACCESS) != 0) {
    throwLastError("Cannot write the file");
  }
}

/// Has the database use a write-ahead log. While another process makes the same change SQLite
/// refuses at once, without the wait that other statements have; so this waits for the other's
/// transaction and tries again. A process that only reads is waited for by SQLite itself, and no
/// longer than that.
void switchToWriteAheadLog(SQLite::Database& database, std::chrono::milliseconds busyTimeout) {
  constexpr int kAttempts = 20;
  const auto end = std::chrono::steady_clock::now() + busyTimeout;
  for (int attempt = 1;; ++attempt) {
    try {
      database.exec("PRAGMA journal_mode = WAL");
      return;
    } catch (const SQLite::Exception& error) {
      const bool isLast = attempt == kAttempts || std::chrono::steady_clock::now() >= end;
      if (error.getErrorCode() != SQLITE_BUSY || isLast) throw;
    }
    database.exec("BEGIN IMMEDIATE; ROLLBACK");
  }
}

/// The path as a URI for SQLite: the characters that would end the path there are escaped.
std::string uriOf(const fs::path& file) {
  std::string text = "file:";
  for (const char character : file.string()) {
    switch (character) {
      case '%':
        text += "%25";
        break;
      case '?':
        text += "%3F";
        break;
      case '#':
        text += "%23";
        break;
      default:
        text += character;
    }
  }
  return text;
}

void refuseNewerFile(SQLite::Database& database) {
  const int version = database.execAndGet("PRAGMA user_version").getInt();
  if (version <= kVersion) return;
  throw SQLite::Exception("the file is of version " + std::to_string(version) +
                              ", and this library knows those up to " + std::to_string(kVersion),
                          SQLITE_SCHEMA);
}

/// The tables that the file holds, save those that SQLite makes for itself.
SQLiteTables tablesOf(SQLite::Database& database) {
  SQLite::Statement tables(database,
                           "SELECT name, sql FROM sqlite_master "
                           "WHERE type = 'table' AND name NOT GLOB 'sqlite_*'");
  SQLiteTables found;
  while (tables.executeStep()) {
    found.emplace(tables.getColumn(0).getString(), tables.getColumn(1).getString());
  }
  return found;
}

}  // namespace

std::unique_ptr<SQLite::Database> openSQLiteFile(const fs::path& file,
                                                 std::chrono::milliseconds busyTimeout) {
  refuseRelative(file);
  const auto directory = file.parent_path();
  if (const auto error = preparePrivateDirectory(directory)) {
    throw std::system_error(error, "Cannot make the directory");
  }
  if (!makeEmptyFile(file)) checkExistingFile(file);
  auto database = std::make_unique<SQLite::Database>(
      withoutLinks(file).string(),
      SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | SQLite::OPEN_NOFOLLOW,
      static_cast<int>(busyTimeout.count()));
  refuseNewerFile(*database);
  switchToWriteAheadLog(*database, busyTimeout);
  database->exec("PRAGMA secure_delete = ON");
  return database;
}

std::error_code refusalToWrite(const fs::path& file) {
  for (const auto& path : {file, file.parent_path()}) {
    if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0) continue;
    return errno == ENOENT ? std::error_code() : std::error_code(errno, std::generic_category());
  }
  return {};
}

std::unique_ptr<SQLite::Database> openSQLiteFileForReading(const fs::path& file) {
  refuseRelative(file);
  std::error_code error;
  const auto logSize = fs::file_size(fs::path(file).concat("-wal"), error);
  const bool hasLog = !error && logSize > 0;
  // A file without a log can be opened as one that never changes: SQLite then writes nothing beside
  // it.
  auto database = std::make_unique<SQLite::Database>(
      uriOf(withoutLinks(file)) + (hasLog ? "" : "?immutable=1"),
      SQLite::OPEN_READONLY | SQLite::OPEN_URI | SQLite::OPEN_NOFOLLOW);
  refuseNewerFile(*database);
  return database;
}

void prepareTables(SQLite::Database& database, const SQLiteTables& expected) {
  if (tablesOf(database) == expected) return;
  // The tables are looked at once more inside the transaction, because another process may be
  // making them right now.
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  const auto found = tablesOf(database);
  if (found == expected) return;
  if (!found.empty()) {
    throw SQLite::Exception("the file holds other tables than those of this library",
                            SQLITE_SCHEMA);
  }
  for (const auto& [name, statement] : expected) database.exec(statement);
  database.exec("PRAGMA user_version = " + std::to_string(kVersion));
  transaction.commit();
}

void emptyWriteAheadLog(SQLite::Database& database) {
  // The first column tells whether somebody was in the way.
  if (database.execAndGet("PRAGMA wal_checkpoint(TRUNCATE)").getInt() != 0) {
    throw SQLite::Exception("others use the database", SQLITE_BUSY);
  }
}

}  // namespace ovinta::platform::linuxos
