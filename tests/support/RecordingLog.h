#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "platform/Log.h"

namespace ovinta::test {

/// Keeps the lines that were written.
class RecordingLog : public platform::Log {
 public:
  void write(std::string_view line) override {
    const std::lock_guard lock(mutex_);
    lines_.emplace_back(line);
  }

  std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace ovinta::test
