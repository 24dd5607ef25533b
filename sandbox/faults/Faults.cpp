#include "sandbox/faults/Faults.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;

Complaint checkCount(const platform::Value& value) {
  const auto* count = value.as<std::int64_t>();
  return count && *count > 0 ? std::nullopt : Complaint("must be an integer above 0");
}

constexpr std::array<FieldRule, 2> kCommonRules = {
    {{"fault", checkText, true}, {"count", checkCount}}};

const FaultKind* kindOf(const Dictionary& record) {
  const auto* name = platform::find<std::string>(record, "fault");
  const auto kind = std::ranges::find_if(
      faultKinds(), [&](const FaultKind& candidate) { return name && candidate.name == *name; });
  return kind == faultKinds().end() ? nullptr : &*kind;
}

bool hasRule(std::span<const FieldRule> rules, std::string_view key) {
  return std::ranges::find(rules, key, &FieldRule::key) != rules.end();
}

}  // namespace

void Faults::set(const Route& endpoint, Dictionary record) {
  {
    const std::lock_guard lock(mutex_);
    records_.insert_or_assign(&endpoint, std::move(record));
    wake(endpoint);
  }
  onSet_();
}

void Faults::clear() {
  const std::lock_guard lock(mutex_);
  records_.clear();
  for (const auto& [endpoint, end] : std::exchange(ends_, {})) end->raise();
}

void Faults::clear(const Route& endpoint) {
  const std::lock_guard lock(mutex_);
  records_.erase(&endpoint);
  wake(endpoint);
}

void Faults::wake(const Route& endpoint) {
  if (const auto ended = ends_.extract(&endpoint)) ended.mapped()->raise();
}

bool Faults::areInForce() const {
  const std::lock_guard lock(mutex_);
  return !records_.empty();
}

List Faults::list() const {
  const std::lock_guard lock(mutex_);
  List records;
  for (const auto& [endpoint, record] : records_) records.emplace_back(record);
  return records;
}

std::optional<Fault> Faults::take(const Route& endpoint) {
  const std::lock_guard lock(mutex_);
  const auto entry = records_.find(&endpoint);
  if (entry == records_.end()) return std::nullopt;
  auto& end = ends_[&endpoint];
  if (!end) end = std::make_shared<WakeSignal>();
  Fault fault{kindOf(entry->second), entry->second, end};
  if (const auto* count = platform::find<std::int64_t>(entry->second, "count")) {
    if (*count == 1) {
      records_.erase(entry);
    } else {
      entry->second.insert_or_assign("count", *count - 1);
    }
  }
  return fault;
}

Dictionary faultErrors(const Dictionary& record) {
  Dictionary errors = fieldErrors(record, kCommonRules);
  const FaultKind* kind = kindOf(record);
  if (!kind) {
    errors.emplace("fault", List{fieldMessage("fault", "is unknown")});
    return errors;
  }
  errors.merge(fieldErrors(record, kind->settings));
  for (const auto& [key, value] : record) {
    if (hasRule(kCommonRules, key) || hasRule(kind->settings, key)) continue;
    errors.emplace(key, List{key + " is no setting of this fault"});
  }
  return errors;
}

}  // namespace ovinta::sandbox
