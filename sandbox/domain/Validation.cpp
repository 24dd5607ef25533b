#include "sandbox/domain/Validation.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/UUID.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

Complaint checkWord(const Value& value, bool (*isKnown)(std::string_view), Complaint complaint) {
  const auto* text = value.as<std::string>();
  return text && isKnown(*text) ? std::nullopt : complaint;
}

Complaint checkDegrees(const Value& value, double limit, Complaint complaint) {
  const auto degrees = number(value);
  return degrees && std::abs(*degrees) <= limit ? std::nullopt : complaint;
}

constexpr std::array<FieldRule, 5> kBeaconRules = {{{"rssi", checkNumber, true},
                                                    {"distance", checkNumber, true},
                                                    {"uuid", checkUUID, true},
                                                    {"major", checkUnsigned16, true},
                                                    {"minor", checkUnsigned16, true}}};

}  // namespace

Dictionary fieldErrors(const Dictionary& record, std::span<const FieldRule> rules) {
  Dictionary errors;
  for (const FieldRule& rule : rules) {
    const auto field = record.find(rule.key);
    const bool missing = field == record.end() || field->second.as<std::nullptr_t>();
    const Complaint complaint = missing ? (rule.required ? Complaint("is missing") : std::nullopt)
                                        : rule.check(field->second);
    if (complaint) errors.emplace(rule.key, List{fieldMessage(rule.key, *complaint)});
  }
  return errors;
}

void copyFields(const Dictionary& from, std::span<const FieldRule> rules, Dictionary& to) {
  for (const FieldRule& rule : rules) {
    const auto field = from.find(rule.key);
    if (field == from.end() || field->second.as<std::nullptr_t>()) continue;
    to.insert_or_assign(field->first, field->second);
  }
}

std::string fieldMessage(std::string_view key, std::string_view complaint) {
  std::string message(key);
  std::ranges::replace(message, '_', ' ');
  message[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(message[0])));
  return message.append(" ").append(complaint);
}

Refusal invalid(std::string_view key, std::string_view complaint) {
  return refusal(Refusal::Kind::invalid, key, fieldMessage(key, complaint));
}

std::optional<Refusal> invalid(Dictionary errors) {
  if (errors.empty()) return std::nullopt;
  return Refusal{Refusal::Kind::invalid, std::move(errors)};
}

bool isRecord(const Value& value, std::span<const FieldRule> rules) {
  const auto* record = value.as<Dictionary>();
  return record && fieldErrors(*record, rules).empty();
}

bool isRecordList(const Value& value, std::span<const FieldRule> rules) {
  const auto* list = value.as<List>();
  return list &&
         std::ranges::all_of(*list, [&](const Value& item) { return isRecord(item, rules); });
}

std::optional<double> number(const Value& value) {
  if (const auto* integer = value.as<std::int64_t>()) return static_cast<double>(*integer);
  if (const auto* real = value.as<double>()) return *real;
  return std::nullopt;
}

Complaint checkIntegerRange(const Value& value, std::int64_t least, std::int64_t most,
                            Complaint complaint) {
  const auto* integer = value.as<std::int64_t>();
  return integer && *integer >= least && *integer <= most ? std::nullopt : complaint;
}

Complaint checkText(const Value& value) {
  return value.as<std::string>() ? std::nullopt : Complaint("must be a text");
}

Complaint checkFilledText(const Value& value) {
  const auto* text = value.as<std::string>();
  return text && !text->empty() ? std::nullopt : Complaint("must be a text and not empty");
}

Complaint checkConsent(const Value& value) {
  const auto* given = value.as<bool>();
  return given && *given ? std::nullopt : Complaint("must be accepted");
}

Complaint checkInteger(const Value& value) {
  return value.as<std::int64_t>() ? std::nullopt : Complaint("must be an integer");
}

Complaint checkSeconds(const Value& value) {
  return checkIntegerRange(value, 0, 7 * 24 * 3600, "must be an integer from 0 to 604800");
}

Complaint checkNumber(const Value& value) {
  return number(value) ? std::nullopt : Complaint("must be a number");
}

Complaint checkMetres(const Value& value) {
  const auto metres = number(value);
  return metres && std::isfinite(*metres) && *metres > 0 ? std::nullopt
                                                         : Complaint("must be more than 0 metres");
}

Complaint checkLatitude(const Value& value) {
  return checkDegrees(value, 90, "must be a number from -90 to 90");
}

Complaint checkLongitude(const Value& value) {
  return checkDegrees(value, 180, "must be a number from -180 to 180");
}

Complaint checkRating(const Value& value) {
  return checkIntegerRange(value, 1, 5, "must be an integer from 1 to 5");
}

Complaint checkBeacons(const Value& value) {
  return isRecordList(value, kBeaconRules) ? std::nullopt : Complaint("must be a list of beacons");
}

Complaint checkUUID(const Value& value) {
  const auto* text = value.as<std::string>();
  return text && platform::UUID::parse(*text) ? std::nullopt : Complaint("is no UUID");
}

Complaint checkUnsigned16(const Value& value) {
  return checkIntegerRange(value, 0, UINT16_MAX, "is out of range");
}

Complaint checkDate(const Value& value) {
  return checkWord(value, isDateText, "must be a date in UTC with milliseconds");
}

Complaint checkPickupWindow(const Value& value) {
  return checkWord(value, isPickupWindow, "must be two dates joined by a slash");
}

Complaint checkOrderState(const Value& value) {
  return checkWord(value, isOrderState, "is no state of an order");
}

Complaint checkCustomerState(const Value& value) {
  return checkWord(value, isCustomerState, "is no state of a customer");
}

Complaint checkLocationPermission(const Value& value) {
  return checkWord(value, isLocationPermission, "is no location permission");
}

}  // namespace ovinta::sandbox
