#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/Log.h"
#include "platform/SettingsStore.h"
#include "platform/portable/InMemorySettingsStore.h"

namespace SQLite {
class Database;
}

namespace ovinta::platform::linuxos {

/// Settings in a SQLite file. All of them are held in memory: a read is a look-up, a write goes
/// through to the file. What another process writes is seen from the next start on. The file is
/// opened at the first use, which waits as long as another process has it locked; a write to the
/// open file waits up to `busyTimeout`. A write that fails is made up for together with the next
/// one; a damaged file is set aside and written anew, and one that cannot be written is read alone.
/// The log tells once of a failure that repeats.
class SQLiteSettingsStore : public SettingsStore {
 public:
  /// How long a write to the open file waits for another process; short, because it may come from
  /// the main thread.
  static constexpr std::chrono::milliseconds kBusyTimeout{1000};

  /// Opens nothing yet. Without a file the settings stay in memory.
  SQLiteSettingsStore(std::optional<std::filesystem::path> file, std::shared_ptr<Log> log,
                      std::chrono::milliseconds busyTimeout = kBusyTimeout);
  ~SQLiteSettingsStore() override;

  std::optional<std::string> string(std::string_view key) const override;
  void set(std::string_view key, std::string_view value) override;
  void remove(std::string_view key) override;
  void apply(const Changes& changes) override;
  void wipe(std::string_view key) override;
  std::optional<std::string> failure() const override;
  void registerDefault(std::string_view key, std::string_view value) override;

 private:
  class Connection;

  void loadOnce() const;
  /// The methods below are called with `writing_` held.
  void persist();
  void tell(std::string failure) const;
  bool attempt(const char* what, const std::function<void()>& step) const;
  /// This and the methods below throw what access to the file throws.
  void open() const;
  void read(SQLite::Database& database) const;
  void openOrRebuild() const;
  void flush();
  void flushOrRebuild();
  void wipeTraces();

  const std::optional<std::filesystem::path> file_;
  const std::shared_ptr<Log> log_;
  const std::chrono::milliseconds busyTimeout_;
  mutable portable::InMemorySettingsStore cache_;
  mutable std::once_flag loaded_;
  mutable std::mutex writing_;
  mutable std::unique_ptr<Connection> connection_;
  /// Keys whose text in the cache is not in the file yet.
  mutable std::set<std::string, std::less<>> unwritten_;
  /// Whether something was wiped that may have left traces.
  bool isWiping_ = false;
  /// The failures of which nothing has been made up for since; empty while all is in place.
  mutable std::set<std::string> failures_;
};

}  // namespace ovinta::platform::linuxos
