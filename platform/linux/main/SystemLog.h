#pragma once

#include <filesystem>
#include <mutex>
#include <string>

#include "platform/Log.h"

namespace ovinta::platform::linuxos {

/// Writes lines to standard error, which services of the system and desktop sessions connect to the
/// journal; a process without standard error (closed, or the null device) sends them to the journal
/// itself. Newlines inside a line become blanks, so that nobody can forge a line of its own.
class SystemLog : public Log {
 public:
  /// `identifier` names the process to the journal. The descriptor is not owned.
  explicit SystemLog(std::string identifier, int standardError = 2,
                     const std::filesystem::path& journalSocket = "/run/systemd/journal/socket");
  ~SystemLog() override;

  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  void write(std::string_view line) override;

 private:
  std::string identifier_;
  int standardError_;
  /// The descriptor of the connection to the journal; -1 where standard error serves or there is no
  /// journal.
  int journal_ = -1;
  std::mutex mutex_;
};

}  // namespace ovinta::platform::linuxos
