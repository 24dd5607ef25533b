#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Value.h"
#include "sandbox/domain/Journal.h"

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
  /// When it was answered, as answers carry dates, and how long it was under way by then.
  std::string time = {};
  double milliseconds = 0;
};

/// The requests received last, in memory only. Everything is kept for testers to see, but the
/// values of passwords, which are masked, and texts beyond 64 KiB. May be used from any thread.
class RequestLog {
 public:
  /// `onRequest` is told of the summary of each request that is added, on the thread that adds it,
  /// in the order of the numbers; it must not use the log.
  explicit RequestLog(std::function<void(const platform::Dictionary& summary)> onRequest);

  void add(const ReceivedRequest& request);

  /// Oldest first: number, time, duration, method, path with query, headers, body, status and
  /// answer of each. Bytes that a JSON text cannot hold show as "?".
  platform::List list() const { return requests_.list(); }
  /// The same without headers and texts.
  platform::List summaries() const;

  /// The request of that number; absent when it is not kept.
  std::optional<platform::Dictionary> find(std::int64_t id) const { return requests_.find(id); }

  void clear() { requests_.clear(); }

 private:
  Journal requests_;
};

}  // namespace ovinta::sandbox
