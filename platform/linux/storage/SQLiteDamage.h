#pragma once

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

#include "platform/Log.h"

namespace ovinta::platform::linuxos {

/// Whether the file itself is at fault: damaged, or no database.
bool isDamage(const SQLite::Exception& error);

/// Looks at the whole database: damage behind the first page would show only when somebody reads
/// there. Throws `SQLite::Exception`.
void throwIfDamaged(SQLite::Database& database);

/// Renames a damaged database, and what belongs to it, to `<name>.corrupt-<n>` with the first free
/// number, and returns the new path. Throws `std::system_error`.
std::filesystem::path setAsideSQLiteFile(const std::filesystem::path& file);

/// Removes everything of the database that was ever set aside.
std::error_code removeSetAsideFiles(const std::filesystem::path& file);

/// Calls `open`, which opens the file and throws `SQLite::Exception`. While another process has the
/// file locked it waits, of which the log tells once. Where the file turns out to be damaged it is
/// set aside, of which the log tells under the name, `forget` is called, and then `open` again.
/// Other processes that do the same at the same time do it once.
void openOrRebuildSQLiteFile(
    const std::filesystem::path& file, const char* name, Log& log,
    const std::function<void()>& open, const std::function<void()>& forget = [] {});

/// Why the library cannot use a database, and what helps.
struct SQLiteProblem {
  std::string text;
  std::string advice;
  /// Whether somebody else has it for themselves, and nothing else is wrong.
  bool isLocked = false;
};

/// What is wrong with a database; absent when the library can use it, also where there is none yet.
/// Opens it as the library does, and changes nothing that its tables hold.
std::optional<SQLiteProblem> problemOfSQLiteFile(const std::filesystem::path& file);

}  // namespace ovinta::platform::linuxos
