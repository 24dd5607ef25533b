#pragma once

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <system_error>

namespace ovinta::platform::linuxos {

/// What SQLite adds to a database's name for each of the files that may belong to it; the database
/// itself comes first.
inline constexpr std::array kSQLiteSuffixes{"", "-wal", "-shm", "-journal"};

/// Opens a database in write-ahead mode, making the file (mode 0600) and its directory (mode 0700)
/// where they are missing; the path must be absolute. What is deleted there leaves nothing behind
/// in the file. A statement that meets another writer waits up to `busyTimeout`. The connection is
/// for one thread at a time. Throws `SQLite::Exception`, with SQLITE_SCHEMA for a file of a newer
/// version of the library, which stays as it is, or `std::system_error` when the file system
/// refuses.
std::unique_ptr<SQLite::Database> openSQLiteFile(const std::filesystem::path& file,
                                                 std::chrono::milliseconds busyTimeout);

/// Why the file system lets nobody write the database, as on a disk that is mounted for reading;
/// no error where it does, also where there is no file yet.
std::error_code refusalToWrite(const std::filesystem::path& file);

/// Opens a database that `openSQLiteFile` has made, for reading. Throws `SQLite::Exception`, also
/// for one whose write-ahead log cannot be read without writing.
std::unique_ptr<SQLite::Database> openSQLiteFileForReading(const std::filesystem::path& file);

/// The statements that make a database's tables, by the tables' names.
using SQLiteTables = std::map<std::string, std::string>;

/// Makes the tables in an empty database. Throws `SQLite::Exception`, with SQLITE_SCHEMA for a
/// database that holds other tables, which stays as it is.
void prepareTables(SQLite::Database& database, const SQLiteTables& expected);

/// Moves everything that the write-ahead log holds into the database's file, and leaves an empty
/// one. Throws `SQLite::Exception`, with SQLITE_BUSY while others use the database.
void emptyWriteAheadLog(SQLite::Database& database);

}  // namespace ovinta::platform::linuxos
