#include "sandbox/domain/Journal.h"

namespace ovinta::sandbox {

platform::Dictionary Journal::add(platform::Dictionary record) {
  const std::lock_guard lock(mutex_);
  record.insert_or_assign("id", ++lastID_);
  onAdded_(record);
  if (records_.size() == mostKept_) records_.pop_front();
  records_.push_back(record);
  return record;
}

platform::List Journal::list() const {
  const std::lock_guard lock(mutex_);
  return {records_.begin(), records_.end()};
}

std::optional<platform::Dictionary> Journal::find(std::int64_t id) const {
  const std::lock_guard lock(mutex_);
  // The numbers of what is kept have no gap.
  const std::int64_t first = lastID_ + 1 - static_cast<std::int64_t>(records_.size());
  if (id < first || id > lastID_) return std::nullopt;
  return records_[static_cast<std::size_t>(id - first)];
}

void Journal::clear() {
  const std::lock_guard lock(mutex_);
  records_.clear();
}

}  // namespace ovinta::sandbox
