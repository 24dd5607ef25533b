#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/client/ObservedURLSession.h"

namespace ovinta::cli {

/// The request and its answer in a line.
std::string describe(const Exchange& exchange);

/// All requests so far and how they ended. May be used from any thread.
class ExchangeLog {
 public:
  void add(Exchange exchange);

  /// How many requests of that method, and, where given, of that kind and content of event, were
  /// answered with success.
  std::size_t succeeded(std::string_view method, std::string_view eventType = {},
                        std::string_view content = {}) const;

  /// How many requests were not answered with success.
  std::size_t failed() const;

  /// The number of requests by kind, e.g. "POST m/v1/events location_update".
  std::map<std::string, std::int64_t> counts() const;

  /// The request that ended last; absent before the first has.
  std::optional<Exchange> last() const;

 private:
  mutable std::mutex mutex_;
  std::vector<Exchange> exchanges_;
};

}  // namespace ovinta::cli
