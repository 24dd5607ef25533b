#include "platform/linux/notifications/NotificationStore.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <utility>

#include "platform/JSON.h"
#include "platform/linux/notifications/UserNotificationJSON.h"
#include "platform/linux/storage/SQLiteDamage.h"
#include "platform/linux/storage/SQLiteFile.h"
#include "platform/portable/RegionSide.h"

namespace ovinta::platform::linuxos {

using portable::RegionSide;

namespace {

/// How long a step waits for another writer. It may be long, because nobody waits for a step on the
/// main thread.
constexpr std::chrono::milliseconds kBusyTimeout{5000};

/// `claimed` is when a request began to be shown, in seconds since 1970, or 0.
constexpr const char* kRequestTable =
    "CREATE TABLE request("
    "revision INTEGER PRIMARY KEY AUTOINCREMENT, identifier TEXT NOT NULL UNIQUE, "
    "request TEXT NOT NULL, side INTEGER NOT NULL, claimed INTEGER NOT NULL) STRICT";
constexpr const char* kClickTable =
    "CREATE TABLE click(number INTEGER PRIMARY KEY, userInfo TEXT NOT NULL) STRICT";

constexpr const char* kAll = "SELECT revision, request, side FROM request ORDER BY revision";

/// Selects the requests that no process is just showing.
constexpr const char* kWaiting =
    "SELECT revision, request, side FROM request WHERE claimed < unixepoch() - 60 "
    "ORDER BY revision";

template <class... Values>
void run(SQLite::Database& database, const char* text, const Values&... values) {
  SQLite::Statement statement(database, text);
  int place = 0;
  (statement.bind(++place, values), ...);
  statement.exec();
}

}  // namespace

struct NotificationStore::Row {
  std::int64_t revision;
  UserNotificationRequest request;
  RegionSide side;
};

/// A change of the side of its region's border on which a request was last judged to be.
struct NotificationStore::Move {
  Row row;
  RegionSide side;
  bool fires;
};

NotificationStore::NotificationStore(std::optional<std::filesystem::path> file,
                                     std::shared_ptr<Log> log)
    : file_(std::move(file)), log_(std::move(log)) {}

NotificationStore::~NotificationStore() = default;

void NotificationStore::open() {
  auto database = file_ ? openSQLiteFile(*file_, kBusyTimeout)
                        : std::make_unique<SQLite::Database>(
                              ":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  prepareTables(*database, {{"request", kRequestTable}, {"click", kClickTable}});
  throwIfDamaged(*database);
  database_ = std::move(database);
  openFile_ = fileID();
}

std::optional<NotificationStore::FileID> NotificationStore::fileID() const {
  struct stat status {};
  if (!file_ || stat(file_->c_str(), &status) != 0) return std::nullopt;
  return FileID(status.st_dev, status.st_ino);
}

SQLite::Database& NotificationStore::database() {
  if (openFile_ != fileID()) database_ = nullptr;
  if (!database_ && file_) {
    openOrRebuildSQLiteFile(*file_, "pending notifications", *log_, [this] { open(); });
  } else if (!database_) {
    open();
  }
  return *database_;
}

SQLite::Database* NotificationStore::existing() {
  if (file_ ? !fileID() : !database_) return nullptr;
  return &database();
}

std::vector<NotificationStore::Row> NotificationStore::rows(SQLite::Database& database,
                                                            const char* query) {
  std::vector<Row> rows;
  SQLite::Statement all(database, query);
  while (all.executeStep()) {
    for (auto& request : notificationRequests(all.getColumn(1).getString())) {
      rows.push_back({all.getColumn(0).getInt64(), std::move(request),
                      static_cast<RegionSide>(all.getColumn(2).getInt())});
    }
  }
  return rows;
}

std::vector<UserNotificationRequest> NotificationStore::pending() {
  std::vector<UserNotificationRequest> requests;
  auto* const found = existing();
  if (!found) return requests;
  for (Row& row : rows(*found, kAll)) requests.push_back(std::move(row.request));
  return requests;
}

void NotificationStore::put(const UserNotificationRequest& request) {
  run(database(),
      "INSERT OR REPLACE INTO request(identifier, request, side, claimed) "
      "VALUES(?, ?, ?, 0)",
      request.identifier, notificationRequestsText({request}),
      static_cast<int>(RegionSide::unknown));
}

void NotificationStore::remove(const std::vector<std::string>& identifiers) {
  auto* const found = existing();
  if (!found) return;
  SQLite::Transaction transaction(*found, SQLite::TransactionBehavior::IMMEDIATE);
  for (const auto& identifier : identifiers) {
    run(*found, "DELETE FROM request WHERE identifier = ?", identifier);
  }
  transaction.commit();
}

std::vector<NotificationStore::Move> NotificationStore::moves(SQLite::Database& database,
                                                              const Location& fix,
                                                              const Geodesy& geodesy) {
  std::vector<Move> moves;
  for (Row& row : rows(database, kWaiting)) {
    const auto& region = row.request.trigger.region;
    const RegionSide side = portable::sideOf(region, fix, geodesy);
    if (side == RegionSide::unknown || side == row.side) continue;
    const bool fires = portable::fires(region, row.side, side);
    moves.push_back({std::move(row), side, fires});
  }
  return moves;
}

std::vector<NotificationStore::Firing> NotificationStore::cross(const Location& fix,
                                                                const Geodesy& geodesy) {
  std::vector<Firing> firing;
  auto* const found = existing();
  // Most fixes change nothing and need no lock.
  if (!found || moves(*found, fix, geodesy).empty()) return firing;
  SQLite::Transaction transaction(*found, SQLite::TransactionBehavior::IMMEDIATE);
  for (Move& move : moves(*found, fix, geodesy)) {
    const bool leaves = move.fires && !move.row.request.trigger.repeats;
    run(*found, "UPDATE request SET side = ?, claimed = ? * unixepoch() WHERE revision = ?",
        static_cast<int>(move.side), static_cast<int>(leaves), move.row.revision);
    if (move.fires) firing.push_back({move.row.revision, std::move(move.row.request)});
  }
  transaction.commit();
  return firing;
}

void NotificationStore::settle(const Firing& firing, bool isShown) {
  auto* const found = existing();
  if (!found) return;
  run(*found,
      isShown ? "DELETE FROM request WHERE revision = ? AND claimed > 0"
              : "UPDATE request SET claimed = 0 WHERE revision = ?",
      firing.revision);
}

void NotificationStore::addClick(const Dictionary& userInfo) {
  auto* const found = existing();
  if (found) run(*found, "INSERT INTO click(userInfo) VALUES(?)", typedJSON(userInfo));
}

std::vector<Dictionary> NotificationStore::takeClicks() {
  std::vector<Dictionary> clicks;
  auto* const found = existing();
  if (!found) return clicks;
  SQLite::Transaction transaction(*found, SQLite::TransactionBehavior::IMMEDIATE);
  SQLite::Statement all(*found, "SELECT userInfo FROM click ORDER BY number");
  while (all.executeStep()) {
    const auto value = parseJSON(all.getColumn(0).getString());
    if (const auto* userInfo = value ? value->as<Dictionary>() : nullptr) {
      clicks.push_back(*userInfo);
    }
  }
  if (!clicks.empty()) found->exec("DELETE FROM click");
  transaction.commit();
  return clicks;
}

}  // namespace ovinta::platform::linuxos
