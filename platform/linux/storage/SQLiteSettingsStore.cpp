#include "platform/linux/storage/SQLiteSettingsStore.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <exception>
#include <system_error>
#include <utility>

#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"

namespace ovinta::platform::linuxos {
namespace {

const SQLiteTables kTables{{"setting",
                            "CREATE TABLE setting(key TEXT PRIMARY KEY NOT NULL, "
                            "value TEXT NOT NULL) STRICT, WITHOUT ROWID"}};

}  // namespace

/// The open file with its prepared statements.
class SQLiteSettingsStore::Connection {
 public:
  explicit Connection(std::unique_ptr<SQLite::Database> database) : database_(std::move(database)) {
    // With this a commit costs no disk flush: a crash of the process loses nothing, a power cut at
    // most the last changes.
    database_->exec("PRAGMA synchronous = NORMAL");
    put_.emplace(*database_,
                 "INSERT INTO setting(key, value) VALUES(?, ?) "
                 "ON CONFLICT(key) DO UPDATE SET value = excluded.value");
    erase_.emplace(*database_, "DELETE FROM setting WHERE key = ?");
  }

  SQLite::Database& database() { return *database_; }

  void put(const std::string& key, const std::string& value) {
    put_->bindNoCopy(1, key);
    put_->bindNoCopy(2, value);
    run(*put_);
  }

  void erase(const std::string& key) {
    erase_->bindNoCopy(1, key);
    run(*erase_);
  }

 private:
  static void run(SQLite::Statement& statement) {
    try {
      statement.exec();
      statement.reset();
    } catch (...) {
      statement.tryReset();
      throw;
    }
  }

  std::unique_ptr<SQLite::Database> database_;
  std::optional<SQLite::Statement> put_;
  std::optional<SQLite::Statement> erase_;
};

SQLiteSettingsStore::SQLiteSettingsStore(std::optional<std::filesystem::path> file,
                                         std::shared_ptr<Log> log,
                                         std::chrono::milliseconds busyTimeout)
    : file_(std::move(file)), log_(std::move(log)), busyTimeout_(busyTimeout) {}

SQLiteSettingsStore::~SQLiteSettingsStore() = default;

void SQLiteSettingsStore::loadOnce() const {
  std::call_once(loaded_, [this] {
    const std::lock_guard lock(writing_);
    if (!file_) {
      return tell("Settings are kept in memory only: the user has no home directory");
    }
    std::error_code error;
    if (!std::filesystem::exists(*file_, error) && !error) return;
    attempt("Could not open the settings", [this] { openOrRebuild(); });
  });
}

void SQLiteSettingsStore::tell(std::string failure) const {
  const auto [text, isNews] = failures_.insert(std::move(failure));
  if (isNews) log_->write(*text);
}

/// Runs the step; false when it fails, of which the log and `failure` tell.
bool SQLiteSettingsStore::attempt(const char* what, const std::function<void()>& step) const {
  try {
    step();
    return true;
  } catch (const std::exception& failure) {
    tell(std::string(what) + ": " + failure.what());
    return false;
  }
}

void SQLiteSettingsStore::read(SQLite::Database& database) const {
  prepareTables(database, kTables);
  throwIfDamaged(database);
  SQLite::Statement all(database, "SELECT key, value FROM setting");
  while (all.executeStep()) {
    const auto key = all.getColumn(0).getString();
    if (!unwritten_.contains(key)) cache_.set(key, all.getColumn(1).getString());
  }
}

void SQLiteSettingsStore::open() const {
  if (const auto refusal = refusalToWrite(*file_)) {
    read(*openSQLiteFileForReading(*file_));
    throw std::system_error(refusal, "They can be read, but not written");
  }
  auto database = openSQLiteFile(*file_, busyTimeout_);
  read(*database);
  connection_ = std::make_unique<Connection>(std::move(database));
}

void SQLiteSettingsStore::openOrRebuild() const {
  openOrRebuildSQLiteFile(
      *file_, "settings", *log_, [this] { open(); },
      [this] {
        for (auto& key : cache_.storedKeys()) unwritten_.insert(std::move(key));
      });
}

void SQLiteSettingsStore::flush() {
  if (!connection_) openOrRebuild();
  std::optional<SQLite::Transaction> transaction;
  if (unwritten_.size() > 1) {
    transaction.emplace(connection_->database(), SQLite::TransactionBehavior::IMMEDIATE);
  }
  for (const auto& key : unwritten_) {
    if (const auto value = cache_.stored(key)) {
      connection_->put(key, *value);
    } else {
      connection_->erase(key);
    }
  }
  if (transaction) transaction->commit();
  unwritten_.clear();
}

void SQLiteSettingsStore::flushOrRebuild() {
  try {
    return flush();
  } catch (const SQLite::Exception& error) {
    if (!isDamage(error)) throw;
  }
  connection_.reset();
  flush();
}

/// Leaves nothing of earlier texts where the file or what was set aside may hold them.
void SQLiteSettingsStore::wipeTraces() {
  const auto error = removeSetAsideFiles(*file_);
  if (connection_) emptyWriteAheadLog(connection_->database());
  if (error) throw std::system_error(error, "Cannot remove a damaged file that was set aside");
}

void SQLiteSettingsStore::persist() {
  if (!file_) return;
  const bool isWritten = attempt("Could not write the settings", [this] { flushOrRebuild(); });
  // Wiping comes after the writing, which may set another file aside.
  const bool isWiped = !isWiping_ || attempt("Could not wipe a setting", [this] { wipeTraces(); });
  if (!isWritten || !isWiped) return;
  isWiping_ = false;
  failures_.clear();
}

std::optional<std::string> SQLiteSettingsStore::string(std::string_view key) const {
  loadOnce();
  return cache_.string(key);
}

void SQLiteSettingsStore::set(std::string_view key, std::string_view value) {
  apply({{std::string(key), std::string(value)}});
}

void SQLiteSettingsStore::remove(std::string_view key) { apply({{std::string(key), {}}}); }

void SQLiteSettingsStore::apply(const Changes& changes) {
  loadOnce();
  const std::lock_guard lock(writing_);
  cache_.apply(changes);
  for (const auto& [key, value] : changes) unwritten_.insert(key);
  persist();
}

void SQLiteSettingsStore::wipe(std::string_view key) {
  loadOnce();
  const std::lock_guard lock(writing_);
  cache_.remove(key);
  unwritten_.emplace(key);
  isWiping_ = true;
  persist();
}

std::optional<std::string> SQLiteSettingsStore::failure() const {
  loadOnce();
  const std::lock_guard lock(writing_);
  return failures_.empty() ? std::nullopt : std::optional(*failures_.begin());
}

void SQLiteSettingsStore::registerDefault(std::string_view key, std::string_view value) {
  cache_.registerDefault(key, value);
}

}  // namespace ovinta::platform::linuxos
