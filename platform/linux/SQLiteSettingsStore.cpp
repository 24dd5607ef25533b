#include "platform/linux/SQLiteSettingsStore.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <exception>
#include <utility>

#include "platform/linux/SQLiteFile.h"

namespace ovinta::platform::linux {
namespace {

/// Writes may come from the main thread.
constexpr std::chrono::milliseconds kBusyTimeout{1000};

}  // namespace

/// The open file with its prepared statements.
class SQLiteSettingsStore::Connection {
 public:
  explicit Connection(const std::filesystem::path& file)
      : database_(openSQLiteFile(file, kBusyTimeout)) {
    // A commit then costs no disk flush: a crash of the process loses nothing, a power cut at most
    // the last changes.
    database_->exec("PRAGMA synchronous = NORMAL");
    database_->exec(
        "CREATE TABLE IF NOT EXISTS setting(key TEXT PRIMARY KEY NOT NULL, value TEXT NOT NULL) "
        "STRICT, WITHOUT ROWID");
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
                                         std::shared_ptr<Log> log)
    : file_(std::move(file)), log_(std::move(log)) {}

SQLiteSettingsStore::~SQLiteSettingsStore() = default;

void SQLiteSettingsStore::loadOnce() const {
  std::call_once(loaded_, [this] {
    if (!file_) {
      log_->write("Settings are kept in memory only: the user has no home directory");
      return;
    }
    const std::lock_guard lock(writing_);
    std::error_code error;
    if (!std::filesystem::exists(*file_, error)) return;
    try {
      openOrRebuild();
    } catch (const std::exception& failure) {
      log_->write(std::string("Could not read the settings: ") + failure.what());
    }
  });
}

void SQLiteSettingsStore::open() const {
  auto connection = std::make_unique<Connection>(*file_);
  SQLite::Statement all(connection->database(), "SELECT key, value FROM setting");
  while (all.executeStep()) {
    const auto key = all.getColumn(0).getString();
    if (!unwritten_.contains(key)) cache_.set(key, all.getColumn(1).getString());
  }
  connection_ = std::move(connection);
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

void SQLiteSettingsStore::persist(std::string_view key) {
  if (!file_) return;
  unwritten_.emplace(key);
  try {
    flushOrRebuild();
  } catch (const std::exception& failure) {
    log_->write("Could not write the setting \"" + std::string(key) + "\": " + failure.what());
  }
}

std::optional<std::string> SQLiteSettingsStore::string(std::string_view key) const {
  loadOnce();
  return cache_.string(key);
}

void SQLiteSettingsStore::set(std::string_view key, std::string_view value) {
  loadOnce();
  const std::lock_guard lock(writing_);
  cache_.set(key, value);
  persist(key);
}

void SQLiteSettingsStore::remove(std::string_view key) {
  loadOnce();
  const std::lock_guard lock(writing_);
  cache_.remove(key);
  persist(key);
}

void SQLiteSettingsStore::registerDefault(std::string_view key, std::string_view value) {
  cache_.registerDefault(key, value);
}

}  // namespace ovinta::platform::linux
