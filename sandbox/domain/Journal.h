#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// The records that were added last, oldest first, numbered from 1 on under "id". May be used from
/// any thread.
class Journal {
 public:
  using Listener = std::function<void(const platform::Dictionary& record)>;

  /// `onAdded` is told of each record with its number, in the order of the numbers, under the lock
  /// of the journal, which it must not use.
  explicit Journal(
      std::size_t mostKept, Listener onAdded = [](const platform::Dictionary&) {})
      : mostKept_(mostKept), onAdded_(std::move(onAdded)) {}

  /// Keeps the record and answers it with its number.
  platform::Dictionary add(platform::Dictionary record);

  platform::List list() const;

  /// The record of that number; absent when it is not kept.
  std::optional<platform::Dictionary> find(std::int64_t id) const;

  /// Forgets the records; the numbers go on.
  void clear();

 private:
  const std::size_t mostKept_;
  const Listener onAdded_;
  mutable std::mutex mutex_;
  std::int64_t lastID_ = 0;
  std::deque<platform::Dictionary> records_;
};

}  // namespace ovinta::sandbox
