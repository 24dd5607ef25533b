#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Location.h"
#include "platform/Log.h"
#include "platform/UserNotificationCenter.h"

namespace SQLite {
class Database;
}

namespace ovinta::platform::linuxos {

/// The requests that one application has pending, each with the side of its region's border on
/// which the device was seen last, in a SQLite file that several processes may use at once. For one
/// thread at a time. A file that is found damaged when it is opened is set aside and begun anew;
/// one that somebody takes away is let go. Methods throw `SQLite::Exception`, or
/// `std::system_error` when the file system refuses.
class NotificationStore {
 public:
  /// Opens nothing yet; the file is made when something is written. Without a file all stays in
  /// memory.
  NotificationStore(std::optional<std::filesystem::path> file, std::shared_ptr<Log> log);
  ~NotificationStore();

  /// All pending requests in the order in which they were added, those that are about to be shown
  /// among them: whoever shows one may end before that is done, and it can still be removed and
  /// replaced. What cannot be read is passed over.
  std::vector<UserNotificationRequest> pending();

  /// Adds a request, in place of one with the same identifier; where the device is is not known
  /// then. Throws `CodingError` for what JSON cannot hold.
  void put(const UserNotificationRequest& request);
  void remove(const std::vector<std::string>& identifiers);

  /// A request to show, and the revision that tells which writing of it that is.
  struct Firing {
    std::int64_t revision;
    UserNotificationRequest request;
  };

  /// Notes where the device is. Returns the requests that this makes fire. No other process and no
  /// later call gets the same crossing; what does not repeat fires no more.
  std::vector<Firing> cross(const Location& fix, const Geodesy& geodesy);

  /// Says whether a firing request was shown, which ends it. One that was not fires again at the
  /// next crossing, unless it was removed or replaced meanwhile; so does one of which nobody says
  /// anything for a minute, because the process has ended.
  void settle(const Firing& firing, bool isShown);

  /// Keeps the user info of a clicked notification for the application, which is not there; nothing
  /// where its file is gone.
  void addClick(const Dictionary& userInfo);
  /// Hands over the user infos of clicked notifications that were kept, oldest first, and keeps
  /// them no longer.
  std::vector<Dictionary> takeClicks();

 private:
  struct Row;
  struct Move;

  /// What tells a file from others: its device and its number there.
  using FileID = std::pair<std::uint64_t, std::uint64_t>;

  std::optional<FileID> fileID() const;
  SQLite::Database* existing();
  SQLite::Database& database();
  void open();
  static std::vector<Row> rows(SQLite::Database& database, const char* query);
  static std::vector<Move> moves(SQLite::Database& database, const Location& fix,
                                 const Geodesy& geodesy);

  const std::optional<std::filesystem::path> file_;
  const std::shared_ptr<Log> log_;
  std::unique_ptr<SQLite::Database> database_;
  /// Which file the connection has open, to notice one that was put in its place.
  std::optional<FileID> openFile_;
};

}  // namespace ovinta::platform::linuxos
