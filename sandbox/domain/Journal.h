#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// The records that were added last, oldest first, numbered from 1 on under "id". May be used from
/// any thread.
class Journal {
 public:
  explicit Journal(std::size_t mostKept) : mostKept_(mostKept) {}

  /// Keeps the record and answers its number.
  std::int64_t add(platform::Dictionary record);

  platform::List list() const;

  /// The record of that number; absent when it is not kept.
  std::optional<platform::Dictionary> find(std::int64_t id) const;

  /// Forgets the records; the numbers go on.
  void clear();

 private:
  const std::size_t mostKept_;
  mutable std::mutex mutex_;
  std::int64_t lastID_ = 0;
  std::deque<platform::Dictionary> records_;
};

}  // namespace ovinta::sandbox
