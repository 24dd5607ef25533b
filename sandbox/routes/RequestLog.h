#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// A request as it was received, and what it was answered.
struct ReceivedRequest {
  std::string method;
  /// Path and query, as received.
  std::string target;
  /// Names and values, in the order received.
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string body = {};
  /// 0 for no answer.
  int status = 0;
  std::string answerBody = {};
  /// Whether it was answered as the request that it repeats, without being carried out.
  bool isRepetition = false;
};

/// The requests received last, in memory only. Everything is kept for testers to see, but the
/// values of passwords, which are masked, and texts beyond 64 KiB. May be used from any thread.
class RequestLog {
 public:
  void add(const ReceivedRequest& request);

  /// Oldest first: method, path with query, headers, body, status and answer of each, and of a
  /// repetition that it is one. Bytes that a JSON text cannot hold show as "?".
  platform::List list() const;

  void clear();

 private:
  static constexpr std::size_t kMostKept = 1000;

  mutable std::mutex mutex_;
  std::deque<platform::Dictionary> requests_;
};

}  // namespace ovinta::sandbox
