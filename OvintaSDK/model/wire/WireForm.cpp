#include "OvintaSDK/model/wire/WireForm.h"

#include <cmath>

#include "OvintaSDK/model/PickupWindow.h"

namespace ovinta::wire {
namespace {

using platform::CodingError;
using platform::Date;
using platform::JSONValue;
using platform::JSONWriter;

[[noreturn]] void throwCorrupted(const char* description) {
  throw CodingError(CodingError::Kind::dataCorrupted, description);
}

/// The pieces of the text between slashes, without the empty ones.
std::vector<std::string_view> splitAtSlashes(std::string_view text) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('/'), text.size());
    if (end > 0) pieces.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return pieces;
}

}  // namespace

platform::JSONDocument parseDocument(std::string_view text) {
  auto document = platform::JSONDocument::parse(text);
  if (!document) throwCorrupted("The given data was not valid JSON.");
  return *std::move(document);
}

void throwMismatch(const JSONValue& value, std::string_view expected) {
  if (value.kind() == JSONValue::Kind::null) {
    throw CodingError(CodingError::Kind::valueNotFound,
                      "Expected " + std::string(expected) + " but found null instead.");
  }
  throw CodingError(CodingError::Kind::typeMismatch,
                    "Expected " + std::string(expected) + " but found something else instead.");
}

void throwNoInteger(const JSONValue& value) {
  constexpr double kLimit = 0x1p63;
  const auto number = value.number();
  if (value.kind() == JSONValue::Kind::number && (!number || std::abs(*number) >= kLimit)) {
    throwCorrupted("Number does not fit into 64 bits.");
  }
  throwMismatch(value, "an integer");
}

void throwNoNumber(const JSONValue& value) {
  if (value.kind() == JSONValue::Kind::number) throwCorrupted("Number does not fit into a double.");
  throwMismatch(value, "a number");
}

std::uint16_t WireForm<std::uint16_t>::decode(const JSONValue& value) {
  const std::int64_t number = WireForm<std::int64_t>::decode(value);
  if (number < 0 || number > std::numeric_limits<std::uint16_t>::max()) {
    throwCorrupted("Number does not fit into 16 bits.");
  }
  return static_cast<std::uint16_t>(number);
}

platform::UUID WireForm<platform::UUID>::decode(const JSONValue& value) {
  const auto uuid = platform::UUID::parse(expect(value.string(), value, "a string"));
  if (!uuid) throwCorrupted("Attempted to decode UUID from invalid UUID string.");
  return *uuid;
}

void WireForm<platform::UUID>::encode(JSONWriter& writer, const platform::UUID& uuid) {
  writer.string(uuid.text());
}

Date WireForm<Date>::decode(const JSONValue& value, const Dates& dates) {
  const std::string_view text = expect(value.string(), value, "a string");
  const auto date = dates.service().date(text);
  if (!date) throwCorrupted("Date string does not match format expected by formatter.");
  return *date;
}

void WireForm<Date>::encode(JSONWriter& writer, Date date, const Dates& dates) {
  writer.string(dates.service().string(date));
}

PickupWindow WireForm<PickupWindow>::decode(const JSONValue& value, const Dates& dates) {
  const auto pieces = splitAtSlashes(expect(value.string(), value, "a string"));
  const platform::DateFormatter& formatter = dates.pickupWindow();
  const auto start = pieces.size() == 2 ? formatter.date(pieces[0]) : std::nullopt;
  const auto end = start ? formatter.date(pieces[1]) : std::nullopt;
  if (!end) throwCorrupted("Invalid date range format");
  return {*start, *end};
}

void WireForm<PickupWindow>::encode(JSONWriter& writer, const PickupWindow& window,
                                    const Dates& dates) {
  const platform::DateFormatter& formatter = dates.pickupWindow();
  writer.string(formatter.string(window.start) + "/" + formatter.string(window.end));
}

}  // namespace ovinta::wire
