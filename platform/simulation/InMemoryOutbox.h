#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "../Outbox.h"

namespace ovinta::platform::simulation {

/// Keeps entries as long as the object lives, also from one simulation to the next. May be used
/// from any thread.
class InMemoryOutbox final : public Outbox {
 public:
  std::optional<std::vector<OutboxEntry>> load() override {
    const std::lock_guard lock(mutex_);
    std::vector<OutboxEntry> entries;
    for (const auto& [number, entry] : entries_) entries.push_back(entry);
    return entries;
  }

  std::optional<std::string> write(const Changes& changes) override {
    const std::lock_guard lock(mutex_);
    for (const auto number : changes.removed) entries_.erase(number);
    for (const auto& entry : changes.added) entries_.insert_or_assign(entry.number, entry);
    return std::nullopt;
  }

 private:
  std::mutex mutex_;
  std::map<std::int64_t, OutboxEntry> entries_;
};

}  // namespace ovinta::platform::simulation
