#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Date.h"
#include "URLSession.h"

namespace ovinta::platform {

/// An order event that waits to be sent, as it is kept. A plain value.
struct OutboxEntry {
  /// Events are sent in the order of their numbers, which no two of an outbox share.
  std::int64_t number = 0;
  /// When the event was made, by the device's clock.
  Date made{};
  /// What tells the customer who made it from others, and is no secret.
  std::uint32_t customer = 0;
  /// The request, with the fields that carry tokens left empty.
  URLRequest request{};

  friend bool operator==(const OutboxEntry& one, const OutboxEntry& other) {
    return one.number == other.number && one.made == other.made && one.customer == other.customer &&
           one.request.url == other.request.url && one.request.method == other.request.method &&
           one.request.headers == other.request.headers && one.request.body == other.request.body;
  }
};

/// Where order events are kept that wait, so that they outlive the process. Methods are called by
/// one thread at a time, and wait for what they do. None throws.
class Outbox {
 public:
  /// Changes that are made as one: a process that dies meanwhile leaves all of them or none. A
  /// plain value.
  struct Changes {
    /// Entries that go, by their numbers; unknown ones are ignored.
    std::vector<std::int64_t> removed{};
    /// Entries that come, in place of those with the same numbers.
    std::vector<OutboxEntry> added{};
    /// Whether nothing may be left of entries that are gone, nor of damaged files.
    bool leavesNoTrace = false;
  };

  virtual ~Outbox() = default;

  /// What an earlier process has left, in the order of the numbers; an entry that makes no sense is
  /// passed over. Absent where nothing can be read just now, as while another process has the
  /// entries.
  virtual std::optional<std::vector<OutboxEntry>> load() = 0;

  /// Makes the changes, and returns when they outlive the process. Where that fails, the result
  /// says why in a sentence without anything that is kept, and none of them was made; what was kept
  /// before may be lost.
  [[nodiscard]] virtual std::optional<std::string> write(const Changes& changes) = 0;
};

}  // namespace ovinta::platform
