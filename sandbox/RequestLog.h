#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// The requests received last, without headers, queries and bodies. May be used from any thread.
class RequestLog {
 public:
  /// `target` is the request's target as received.
  void add(std::string_view method, std::string_view target, int status);

  /// Oldest first: method, path and status of each.
  platform::List list() const;

 private:
  static constexpr std::size_t kMostKept = 1000;

  mutable std::mutex mutex_;
  std::deque<platform::Dictionary> requests_;
};

}  // namespace ovinta::sandbox
