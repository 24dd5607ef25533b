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

Complaint checkProbability(const platform::Value& value) {
  const auto probability = number(value);
  const bool sound = probability && *probability >= 0 && *probability <= 1;
  return sound ? std::nullopt : Complaint("must be a number from 0 to 1");
}

constexpr std::array<FieldRule, 4> kCommonRules = {{{"fault", checkText, true},
                                                    {"count", checkCount},
                                                    {"every", checkCount},
                                                    {"probability", checkProbability}}};
constexpr std::span<const FieldRule> kOftenRules = std::span(kCommonRules).subspan<1>();

const FaultKind* kindOf(const Dictionary& record) {
  const auto* name = platform::find<std::string>(record, "fault");
  const auto kind = std::ranges::find_if(
      faultKinds(), [&](const FaultKind& candidate) { return name && candidate.name == *name; });
  return kind == faultKinds().end() ? nullptr : &*kind;
}

/// The type of what the setting takes, told by what it does not refuse.
std::string_view typeOf(const FieldRule& rule) {
  // A value that every setting of the type takes.
  constexpr std::int64_t kInteger = 200;
  if (!rule.check("text")) return "text";
  return rule.check(0.5) && !rule.check(kInteger) ? "integer" : "number";
}

List settingList(std::span<const FieldRule> rules) {
  List list;
  for (const FieldRule& rule : rules) {
    list.emplace_back(
        Dictionary{{"name", rule.key}, {"type", typeOf(rule)}, {"required", rule.required}});
  }
  return list;
}

bool hasRule(std::span<const FieldRule> rules, std::string_view key) {
  return std::ranges::find(rules, key, &FieldRule::key) != rules.end();
}

}  // namespace

void Faults::set(const Route& endpoint, Dictionary record) {
  {
    const std::lock_guard lock(mutex_);
    entries_.insert_or_assign(&endpoint, Entry{.record = std::move(record)});
    wake(endpoint);
  }
  onSet_();
  onChange_();
}

void Faults::clear() {
  {
    const std::lock_guard lock(mutex_);
    entries_.clear();
    for (const auto& [endpoint, end] : std::exchange(ends_, {})) end->raise();
  }
  onChange_();
}

void Faults::clear(const Route& endpoint) {
  {
    const std::lock_guard lock(mutex_);
    entries_.erase(&endpoint);
    wake(endpoint);
  }
  onChange_();
}

void Faults::wake(const Route& endpoint) {
  if (const auto ended = ends_.extract(&endpoint)) ended.mapped()->raise();
}

bool Faults::areInForce() const {
  const std::lock_guard lock(mutex_);
  return !entries_.empty();
}

List Faults::list() const {
  const std::lock_guard lock(mutex_);
  List records;
  for (const auto& [endpoint, entry] : entries_) records.emplace_back(entry.record);
  return records;
}

bool Faults::strikes(const Entry& entry) {
  const auto* every = platform::find<std::int64_t>(entry.record, "every");
  if (every && entry.requests % *every != 0) return false;
  const auto setting = entry.record.find("probability");
  return setting == entry.record.end() || chance_.fraction() < *number(setting->second);
}

std::optional<Fault> Faults::take(const Route& endpoint) {
  std::unique_lock lock(mutex_);
  const auto found = entries_.find(&endpoint);
  if (found == entries_.end()) return std::nullopt;
  Entry& entry = found->second;
  ++entry.requests;
  if (!strikes(entry)) return std::nullopt;
  auto& end = ends_[&endpoint];
  if (!end) end = std::make_shared<WakeSignal>();
  Fault fault{kindOf(entry.record), entry.record, end};
  const auto* count = platform::find<std::int64_t>(entry.record, "count");
  if (!count) return fault;
  if (*count == 1) {
    entries_.erase(found);
  } else {
    entry.record.insert_or_assign("count", *count - 1);
  }
  lock.unlock();
  onChange_();
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

Dictionary faultCatalogue() {
  List kinds;
  for (const FaultKind& kind : faultKinds()) {
    kinds.emplace_back(Dictionary{{"name", kind.name}, {"settings", settingList(kind.settings)}});
  }
  return {{"kinds", std::move(kinds)}, {"often", settingList(kOftenRules)}};
}

}  // namespace ovinta::sandbox
