#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "platform/Log.h"
#include "platform/Outbox.h"

namespace SQLite {
class Database;
}

namespace ovinta::platform::linuxos {

/// The name of the file in the data directory.
inline constexpr const char* kOutboxFile = "Outbox.sqlite";

/// Keeps entries in a SQLite file (mode 0600), which one process at a time has for itself: two
/// would send everything twice. The file is made when something is written. One that is damaged is
/// set aside, of which the log tells, and begun anew at the next call; one that cannot be used
/// stays as it is, and is tried again at the next call. For one thread at a time.
class SQLiteOutbox final : public Outbox {
 public:
  /// Opens nothing yet. Without a file nothing can be kept.
  SQLiteOutbox(std::optional<std::filesystem::path> file, std::shared_ptr<Log> log);
  ~SQLiteOutbox() override;

  std::optional<std::vector<OutboxEntry>> load() override;
  std::optional<std::string> write(const Changes& changes) override;

 private:
  void open();
  bool exists() const;
  void removeTraces();
  /// Runs the step with the database open; the reason where that fails.
  std::optional<std::string> attempt(const std::function<void(SQLite::Database&)>& step);

  const std::optional<std::filesystem::path> file_;
  const std::shared_ptr<Log> log_;
  std::unique_ptr<SQLite::Database> database_;
  bool hasTold_ = false;
};

/// How many entries the file holds; absent without a file that can be read, as while another
/// process has it.
std::optional<std::size_t> countOutbox(const std::filesystem::path& file);

}  // namespace ovinta::platform::linuxos
