#include "sandbox/faults/Faults.h"

#include <algorithm>
#include <array>
#include <chrono>
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

Complaint checkTime(const platform::Value& value) {
  constexpr double kYear = 366 * 24 * 3600;
  const auto seconds = number(value);
  const bool sound = seconds && *seconds >= 0 && *seconds <= kYear;
  return sound ? std::nullopt : Complaint("must be a number from 0 to 31622400");
}

constexpr std::array<FieldRule, 6> kCommonRules = {{{"fault", checkText, true},
                                                    {"count", checkCount},
                                                    {"every", checkCount},
                                                    {"probability", checkProbability},
                                                    {"after", checkTime},
                                                    {"for", checkTime}}};
constexpr std::span<const FieldRule> kOftenRules = std::span(kCommonRules).subspan<1>();

/// The interval under the key; absent without one.
std::optional<platform::TimeInterval> interval(const Dictionary& record, std::string_view key) {
  const auto found = record.find(key);
  const auto seconds = found == record.end() ? std::nullopt : number(found->second);
  if (!seconds) return std::nullopt;
  return std::chrono::round<platform::TimeInterval>(std::chrono::duration<double>(*seconds));
}

double secondsFrom(platform::Date begin, platform::Date end) {
  return std::chrono::duration<double>(end - begin).count();
}

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

void Faults::set(const Route* endpoint, Dictionary record) {
  const bool isTimed = record.contains("after") || record.contains("for");
  const platform::Date begin =
      isTimed ? now_() + interval(record, "after").value_or(platform::TimeInterval())
              : platform::kDistantPast;
  const auto length = interval(record, "for");
  const platform::Date end = length ? begin + *length : platform::Date::max();
  {
    const std::lock_guard lock(mutex_);
    entries_.insert_or_assign(endpoint,
                              Entry{.record = std::move(record), .begin = begin, .end = end});
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

void Faults::clear(const Route* endpoint) {
  {
    const std::lock_guard lock(mutex_);
    entries_.erase(endpoint);
    wake(endpoint);
  }
  onChange_();
}

void Faults::wake(const Route* endpoint) {
  if (const auto ended = ends_.extract(endpoint)) ended.mapped()->raise();
}

bool Faults::areInForce() const {
  const std::lock_guard lock(mutex_);
  return !entries_.empty();
}

platform::Date Faults::now() const {
  {
    const std::lock_guard lock(mutex_);
    const auto isTimed = [](const auto& entry) {
      return entry.second.begin != platform::kDistantPast;
    };
    if (std::ranges::none_of(entries_, isTimed)) return platform::kDistantPast;
  }
  return now_();
}

List Faults::list() const {
  const platform::Date now = this->now();
  const std::lock_guard lock(mutex_);
  List records;
  for (const auto& [endpoint, entry] : entries_) {
    if (entry.end <= now) continue;
    Dictionary record = entry.record;
    record.erase("after");
    if (now < entry.begin) record.insert_or_assign("after", secondsFrom(now, entry.begin));
    if (record.contains("for")) {
      record.insert_or_assign("for", secondsFrom(std::max(now, entry.begin), entry.end));
    }
    records.emplace_back(std::move(record));
  }
  return records;
}

bool Faults::strikes(const Entry& entry) {
  const auto* every = platform::find<std::int64_t>(entry.record, "every");
  if (every && entry.requests % *every != 0) return false;
  const auto setting = entry.record.find("probability");
  return setting == entry.record.end() || chance_.fraction() < *number(setting->second);
}

std::optional<Fault> Faults::take(const Route& endpoint) {
  const platform::Date now = this->now();
  std::unique_lock lock(mutex_);
  std::erase_if(entries_, [&](const auto& entry) { return entry.second.end <= now; });
  for (const Route* const place : {&endpoint, static_cast<const Route*>(nullptr)}) {
    const auto found = entries_.find(place);
    if (found == entries_.end() || found->second.begin > now) continue;
    ++found->second.requests;
    if (!strikes(found->second)) return std::nullopt;
    const bool isCounted = found->second.record.contains("count");
    Fault fault = strike(found);
    lock.unlock();
    if (isCounted) onChange_();
    return fault;
  }
  return std::nullopt;
}

Fault Faults::strike(Entries::iterator entry) {
  Dictionary& record = entry->second.record;
  auto& end = ends_[entry->first];
  if (!end) end = std::make_shared<WakeSignal>();
  Fault fault{kindOf(record), record, end};
  if (const auto* count = platform::find<std::int64_t>(record, "count")) {
    if (*count == 1) {
      entries_.erase(entry);
    } else {
      record.insert_or_assign("count", *count - 1);
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

Dictionary faultCatalogue() {
  List kinds;
  for (const FaultKind& kind : faultKinds()) {
    kinds.emplace_back(Dictionary{{"name", kind.name}, {"settings", settingList(kind.settings)}});
  }
  return {{"kinds", std::move(kinds)}, {"often", settingList(kOftenRules)}};
}

}  // namespace ovinta::sandbox
