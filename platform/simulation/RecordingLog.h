#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "../Log.h"

namespace ovinta::platform::simulation {

/// Keeps every line, and passes it on if there is another log. May be used from any thread.
class RecordingLog : public Log {
 public:
  /// `next`, if any, is the log that each line is passed on to.
  explicit RecordingLog(std::shared_ptr<Log> next = nullptr) : next_(std::move(next)) {}

  void write(std::string_view line) override {
    {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(line);
    }
    if (next_) next_->write(line);
  }

  /// All lines so far, in the order of writing.
  std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  const std::shared_ptr<Log> next_;
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace ovinta::platform::simulation
