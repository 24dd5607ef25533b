#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "cli/client/Progress.h"

namespace ovinta::cli {

/// Tells on the terminal, as long as it lives, what is being waited for and for how long already,
/// once that is more than a second; where standard error is no terminal, nothing. May be used from
/// any thread.
class Waiting {
 public:
  /// `what` is a phrase such as "Waiting for the service".
  explicit Waiting(std::string what);
  ~Waiting();
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

  /// Shows at once how far it has come, in place of what was said before.
  void tell(std::string text);

 private:
  void count();

  Progress progress_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string text_;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace ovinta::cli
