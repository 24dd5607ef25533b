#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/Refusal.h"

namespace ovinta::sandbox {

/// What is wrong with a value, as the end of a sentence that begins with the field's name; absent
/// when nothing is.
using Complaint = std::optional<std::string_view>;

/// One field of a record that clients send.
struct FieldRule {
  std::string_view key;
  /// Called with values other than null only.
  Complaint (*check)(const platform::Value&);
  bool required = false;
};

/// The complaints about the record by field name, empty when it keeps to the rules. Null counts as
/// missing; fields without a rule are ignored.
platform::Dictionary fieldErrors(const platform::Dictionary& record,
                                 std::span<const FieldRule> rules);

/// Copies the fields that the rules name from one record to another; null counts as missing.
void copyFields(const platform::Dictionary& from, std::span<const FieldRule> rules,
                platform::Dictionary& to);

/// The message for people: the field's name in words, then the complaint.
std::string fieldMessage(std::string_view key, std::string_view complaint);

/// The refusal of an input for that complaint about one field.
Refusal invalid(std::string_view key, std::string_view complaint);

/// The refusal of an input for those complaints by field name; absent when there are none.
std::optional<Refusal> invalid(platform::Dictionary errors);

/// The number whether it was written with or without a fractional part; otherwise absent.
std::optional<double> number(const platform::Value& value);

/// Whether the value is a record that keeps to the rules, or a list of such records.
bool isRecord(const platform::Value& value, std::span<const FieldRule> rules);
bool isRecordList(const platform::Value& value, std::span<const FieldRule> rules);

Complaint checkIntegerRange(const platform::Value& value, std::int64_t least, std::int64_t most,
                            Complaint complaint);
Complaint checkText(const platform::Value& value);
Complaint checkFilledText(const platform::Value& value);
Complaint checkConsent(const platform::Value& value);
Complaint checkInteger(const platform::Value& value);
Complaint checkSeconds(const platform::Value& value);
Complaint checkNumber(const platform::Value& value);
Complaint checkMetres(const platform::Value& value);
Complaint checkLatitude(const platform::Value& value);
Complaint checkLongitude(const platform::Value& value);
Complaint checkRating(const platform::Value& value);
Complaint checkBeacons(const platform::Value& value);
Complaint checkUUID(const platform::Value& value);
Complaint checkUnsigned16(const platform::Value& value);
Complaint checkDate(const platform::Value& value);
Complaint checkPickupWindow(const platform::Value& value);
Complaint checkOrderState(const platform::Value& value);
Complaint checkCustomerState(const platform::Value& value);
Complaint checkLocationPermission(const platform::Value& value);

}  // namespace ovinta::sandbox
