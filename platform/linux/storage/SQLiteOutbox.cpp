#include "platform/linux/storage/SQLiteOutbox.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <utility>

#include "platform/JSONText.h"
#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// How long a step waits for another process: it is short, because the request waits for the step.
constexpr std::chrono::milliseconds kBusyTimeout{250};

/// `made` is in microseconds since 1970; `request` is JSON.
constexpr const char* kTable =
    "CREATE TABLE event(number INTEGER PRIMARY KEY, made INTEGER NOT NULL, "
    "customer INTEGER NOT NULL, request TEXT NOT NULL) STRICT";

std::optional<std::string> requestText(const URLRequest& request) {
  List headers;
  for (const auto& [name, value] : request.headers) headers.push_back(List{name, value});
  auto text = jsonText(Dictionary{{"url", request.url.text},
                                  {"method", request.method},
                                  {"headers", std::move(headers)},
                                  {"body", request.body ? Value(*request.body) : Value()},
                                  {"timeout", request.timeout.count()}});
  return text ? std::optional(*std::move(text)) : std::nullopt;
}

std::optional<HeaderField> readHeader(const Value& value) {
  const auto* pair = value.as<List>();
  if (!pair || pair->size() != 2) return std::nullopt;
  const auto* name = pair->front().as<std::string>();
  const auto* text = pair->back().as<std::string>();
  return name && text ? std::optional(HeaderField{*name, *text}) : std::nullopt;
}

std::optional<URLRequest> readRequest(const std::string& text) {
  const auto value = parseJSON(text);
  const auto* fields = value ? value->as<Dictionary>() : nullptr;
  if (!fields) return std::nullopt;
  const auto* url = find<std::string>(*fields, "url");
  const auto* method = find<std::string>(*fields, "method");
  const auto* headers = find<List>(*fields, "headers");
  const auto* body = find<std::string>(*fields, "body");
  const auto* timeout = find<std::int64_t>(*fields, "timeout");
  if (!url || !method || !headers || !timeout) return std::nullopt;
  URLRequest request{.url = {*url}, .method = *method};
  for (const Value& header : *headers) {
    auto field = readHeader(header);
    if (!field) return std::nullopt;
    request.headers.push_back(*std::move(field));
  }
  if (body) request.body = *body;
  request.cachePolicy = CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request.timeout = std::chrono::milliseconds(*timeout);
  return request;
}

void insert(SQLite::Database& database, const OutboxEntry& entry) {
  const auto text = requestText(entry.request);
  if (!text) throw SQLite::Exception("the request is no text", SQLITE_MISMATCH);
  SQLite::Statement statement(database, "INSERT OR REPLACE INTO event VALUES(?, ?, ?, ?)");
  statement.bind(1, entry.number);
  statement.bind(2, static_cast<std::int64_t>(entry.made.time_since_epoch().count()));
  statement.bind(3, static_cast<std::int64_t>(entry.customer));
  statement.bind(4, *text);
  statement.exec();
}

}  // namespace

SQLiteOutbox::SQLiteOutbox(std::optional<fs::path> file, std::shared_ptr<Log> log)
    : file_(std::move(file)), log_(std::move(log)) {}

SQLiteOutbox::~SQLiteOutbox() = default;

void SQLiteOutbox::open() {
  if (!file_) throw std::system_error(ENOENT, std::generic_category(), "No data directory");
  auto database = openSQLiteFile(*file_, kBusyTimeout);
  prepareTables(*database, {{"event", kTable}});
  database->exec("PRAGMA locking_mode = EXCLUSIVE");
  // The lock is taken by the first transaction that follows.
  database->exec("BEGIN IMMEDIATE; COMMIT");
  throwIfDamaged(*database);
  database_ = std::move(database);
}

void SQLiteOutbox::setAside() {
  const auto aside = setAsideSQLiteFile(*file_);
  log_->write("The file of order events that wait is damaged and was set aside as " +
              aside.filename().string());
}

/// Runs the step with the database open; the reason where that fails. A damaged file is begun anew.
template <class Step>
std::optional<std::string> SQLiteOutbox::attempt(const Step& step) {
  for (bool isFirst = true;; isFirst = false) {
    try {
      if (!database_) open();
      step(*database_);
      return std::nullopt;
    } catch (const SQLite::Exception& error) {
      database_ = nullptr;
      if (!isDamage(error) || !isFirst) return sqlite3_errstr(error.getErrorCode());
    } catch (const std::exception& error) {
      database_ = nullptr;
      return error.what();
    }
    try {
      setAside();
    } catch (const std::exception& error) {
      return error.what();
    }
  }
}

std::vector<OutboxEntry> SQLiteOutbox::load() {
  std::vector<OutboxEntry> entries;
  std::error_code error;
  if (!file_ || !fs::exists(fs::symlink_status(*file_, error))) return entries;
  const auto failure = attempt([&entries](SQLite::Database& database) {
    entries.clear();
    SQLite::Statement all(database,
                          "SELECT number, made, customer, request FROM event ORDER BY number");
    while (all.executeStep()) {
      auto request = readRequest(all.getColumn(3).getString());
      if (!request) continue;
      entries.push_back(
          {all.getColumn(0).getInt64(), Date(TimeInterval(all.getColumn(1).getInt64())),
           static_cast<std::uint32_t>(all.getColumn(2).getInt64()), *std::move(request)});
    }
  });
  if (failure) log_->write("The order events that wait cannot be read: " + *failure);
  return entries;
}

std::optional<std::size_t> countOutbox(const fs::path& file) {
  try {
    const auto database = openSQLiteFileForReading(file);
    const auto count = database->execAndGet("SELECT count(*) FROM event").getInt64();
    return static_cast<std::size_t>(count);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<std::string> SQLiteOutbox::write(const Changes& changes) {
  return attempt([&changes](SQLite::Database& database) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    SQLite::Statement remove(database, "DELETE FROM event WHERE number = ?");
    for (const auto number : changes.removed) {
      remove.bind(1, number);
      remove.exec();
      remove.reset();
    }
    for (const auto& entry : changes.added) insert(database, entry);
    transaction.commit();
  });
}

}  // namespace ovinta::platform::linuxos
