#include "platform/linux/storage/SQLiteOutbox.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// How long a step waits for another process: it is short, because the request waits for the step.
constexpr std::chrono::milliseconds kOutboxPatience{250};

/// `made` is in microseconds since 1970.
constexpr const char* kTable =
    "CREATE TABLE event(number INTEGER PRIMARY KEY, made INTEGER NOT NULL, "
    "customer INTEGER NOT NULL, request TEXT NOT NULL) STRICT";

/// Of entries with numbers and times that something can be reckoned from: up to the year 9999.
constexpr const char* kSelection =
    "SELECT number, made, customer, request FROM event WHERE number BETWEEN 1 AND "
    "253402300799999999 "
    "AND made BETWEEN 0 AND 253402300799999999 ORDER BY number";

/// A request in lines: method, URL and milliseconds, then a name and a value for each of its
/// fields, and where it has a body an empty line and that. Absent where something else has lines of
/// its own.
std::optional<std::string> requestText(const URLRequest& request) {
  std::string text;
  std::size_t lines = 0;
  const auto add = [&](std::string_view line) {
    text.append(line) += '\n';
    ++lines;
  };
  add(request.method);
  add(request.url.text);
  add(std::to_string(request.timeout.count()));
  for (const auto& [name, value] : request.headers) {
    if (name.empty()) return std::nullopt;
    add(name);
    add(value);
  }
  if (static_cast<std::size_t>(std::ranges::count(text, '\n')) != lines) return std::nullopt;
  return request.body ? text.append("\n").append(*request.body) : text;
}

/// The first line, which is taken off; absent where there is none.
std::optional<std::string> takeLine(std::string_view& text) {
  const auto end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  std::string line(text.substr(0, end));
  text.remove_prefix(end + 1);
  return line;
}

std::optional<URLRequest> readRequest(std::string_view text) {
  URLRequest request;
  std::int64_t timeout = 0;
  std::string* const first[] = {&request.method, &request.url.text};
  for (std::string* const field : first) {
    auto line = takeLine(text);
    if (!line || line->empty()) return std::nullopt;
    field->swap(*line);
  }
  const auto milliseconds = takeLine(text).value_or("");
  const char* const end = milliseconds.data() + milliseconds.size();
  if (std::from_chars(milliseconds.data(), end, timeout).ptr != end || timeout <= 0) return {};
  request.cachePolicy = CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request.timeout = std::chrono::milliseconds(timeout);
  while (auto name = takeLine(text)) {
    if (name->empty()) {
      request.body = text;
      return request;
    }
    auto value = takeLine(text);
    if (!value) return std::nullopt;
    request.headers.push_back({*std::move(name), *std::move(value)});
  }
  return text.empty() ? std::optional(std::move(request)) : std::nullopt;
}

void insert(SQLite::Database& database, const OutboxEntry& entry) {
  const auto text = requestText(entry.request);
  if (!text) return;  // It is not kept, and keeps no other from being kept.
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
  auto database = openSQLiteFile(*file_, kOutboxPatience);
  prepareTables(*database, {{"event", kTable}});
  database->exec("PRAGMA locking_mode = EXCLUSIVE");
  // The lock is taken by the first transaction that follows.
  database->exec("BEGIN IMMEDIATE; COMMIT");
  throwIfDamaged(*database);
  database_ = std::move(database);
}

bool SQLiteOutbox::exists() const {
  std::error_code error;
  return file_ && fs::exists(fs::symlink_status(*file_, error));
}

std::optional<std::string> SQLiteOutbox::attempt(
    const std::function<void(SQLite::Database&)>& step) {
  try {
    try {
      if (!database_) open();
      step(*database_);
      return std::nullopt;
    } catch (const SQLite::Exception& error) {
      database_ = nullptr;
      if (!isDamage(error)) return sqlite3_errstr(error.getErrorCode());
    }
    const auto aside = setAsideSQLiteFile(*file_);
    log_->write("The file of order events that wait is damaged and was set aside as " +
                aside.filename().string());
    return "The file was damaged";
  } catch (const std::exception& error) {
    database_ = nullptr;
    return error.what();
  }
}

std::optional<std::vector<OutboxEntry>> SQLiteOutbox::load() {
  std::vector<OutboxEntry> entries;
  if (!exists()) return entries;
  const auto failure = attempt([&entries](SQLite::Database& database) {
    SQLite::Statement all(database, kSelection);
    while (all.executeStep()) {
      auto request = readRequest(all.getColumn(3).getString());
      if (!request) continue;
      entries.push_back(
          {all.getColumn(0).getInt64(), Date(TimeInterval(all.getColumn(1).getInt64())),
           static_cast<std::uint32_t>(all.getColumn(2).getInt64()), *std::move(request)});
    }
  });
  if (!failure) return entries;
  if (!std::exchange(hasTold_, true)) {
    log_->write("The order events that wait cannot be read: " + *failure);
  }
  // Of a file that was set aside nothing can be read later either.
  return exists() ? std::nullopt : std::optional(std::vector<OutboxEntry>());
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

/// Settings go by the same rules when a token is wiped.
void SQLiteOutbox::removeTraces() {
  const auto error = removeSetAsideFiles(*file_);
  if (database_) emptyWriteAheadLog(*database_);
  if (error) throw std::system_error(error);
}

std::optional<std::string> SQLiteOutbox::write(const Changes& changes) {
  const bool isNothing = changes.removed.empty() && changes.added.empty();
  if (isNothing && !exists()) return std::nullopt;
  return attempt([&](SQLite::Database& database) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    SQLite::Statement remove(database, "DELETE FROM event WHERE number = ?");
    for (const auto number : changes.removed) {
      remove.bind(1, number);
      remove.exec();
      remove.reset();
    }
    for (const auto& entry : changes.added) insert(database, entry);
    transaction.commit();
    if (changes.leavesNoTrace) removeTraces();
  });
}

}  // namespace ovinta::platform::linuxos
