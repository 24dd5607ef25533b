#include "sandbox/domain/SandboxClock.h"

#include <array>
#include <chrono>
#include <string>

#include "platform/portable/FixedPatternDate.h"
#include "sandbox/domain/Validation.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;

constexpr platform::Date kFirst{std::chrono::sys_days{std::chrono::year{1970} / 1 / 1}};
constexpr platform::Date kEnd{std::chrono::sys_days{std::chrono::year{9900} / 1 / 1}};
constexpr double kCentury = 100 * 365.25 * 24 * 3600;

Complaint checkAdvance(const platform::Value& value) {
  const auto seconds = number(value);
  const bool isFit = seconds && *seconds >= 0 && *seconds <= kCentury;
  return isFit ? std::nullopt : Complaint("must be a number from 0 to 3155760000");
}

constexpr std::array<FieldRule, 1> kSetRules = {{{"now", checkDate, true}}};
constexpr std::array<FieldRule, 1> kAdvanceRules = {{{"seconds", checkAdvance, true}}};

Dictionary shownAs(platform::Date beneath, platform::TimeInterval ahead) {
  return {{"now", dateText(beneath + ahead)},
          {"ahead_seconds", std::chrono::duration<double>(ahead).count()}};
}

}  // namespace

platform::Date SandboxClock::now() const {
  const platform::Date beneath = beneath_();
  const std::lock_guard lock(mutex_);
  return beneath + ahead_;
}

Dictionary SandboxClock::shown() const {
  const platform::Date beneath = beneath_();
  const std::lock_guard lock(mutex_);
  return shownAs(beneath, ahead_);
}

Outcome SandboxClock::set(const Dictionary& record) {
  if (auto refused = invalid(fieldErrors(record, kSetRules))) return *std::move(refused);
  const auto time = platform::portable::readFixedDate(*platform::find<std::string>(record, "now"),
                                                      platform::portable::OffsetStyle::extended);
  const platform::Date beneath = beneath_();
  const std::lock_guard lock(mutex_);
  return moveTo(time.value_or(platform::kDistantPast), beneath, "now");
}

Outcome SandboxClock::advance(const Dictionary& record) {
  if (auto refused = invalid(fieldErrors(record, kAdvanceRules))) return *std::move(refused);
  const std::chrono::duration<double> by(*number(record.find("seconds")->second));
  const platform::Date beneath = beneath_();
  const std::lock_guard lock(mutex_);
  return moveTo(beneath + ahead_ + std::chrono::round<platform::TimeInterval>(by), beneath,
                "seconds");
}

void SandboxClock::reset() {
  const std::lock_guard lock(mutex_);
  ahead_ = {};
}

Outcome SandboxClock::moveTo(platform::Date time, platform::Date beneath, std::string_view field) {
  if (time < kFirst || time >= kEnd) return invalid(field, "must lead to the years 1970 to 9899");
  ahead_ = time - beneath;
  return shownAs(beneath, ahead_);
}

}  // namespace ovinta::sandbox
