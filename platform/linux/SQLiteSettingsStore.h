#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/Log.h"
#include "platform/SettingsStore.h"
#include "platform/standard/InMemorySettingsStore.h"

namespace ovinta::platform::linux {

/// Settings in a SQLite file. All of them are held in memory: a read is a look-up, a write goes
/// through to the file. What another process writes is seen from the next start on. A write that
/// fails is made up for together with the next one; a damaged file is set aside and written anew.
class SQLiteSettingsStore : public SettingsStore {
 public:
  /// Opens nothing yet. Without a file the settings stay in memory.
  SQLiteSettingsStore(std::optional<std::filesystem::path> file, std::shared_ptr<Log> log);
  ~SQLiteSettingsStore() override;

  std::optional<std::string> string(std::string_view key) const override;
  void set(std::string_view key, std::string_view value) override;
  void remove(std::string_view key) override;
  void registerDefault(std::string_view key, std::string_view value) override;

 private:
  class Connection;

  void loadOnce() const;
  /// The methods below are called with `writing_` held and throw what the file's access throws.
  void open() const;
  void openOrRebuild() const;
  void flush();
  void flushOrRebuild();
  void persist(std::string_view key);

  const std::optional<std::filesystem::path> file_;
  const std::shared_ptr<Log> log_;
  mutable standard::InMemorySettingsStore cache_;
  mutable std::once_flag loaded_;
  mutable std::mutex writing_;
  mutable std::unique_ptr<Connection> connection_;
  /// Keys whose text in the cache is not in the file yet.
  mutable std::set<std::string, std::less<>> unwritten_;
};

}  // namespace ovinta::platform::linux
