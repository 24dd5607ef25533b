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

/// Takes the first piece of the text that is not empty off its front, with the slashes around it.
std::string_view takePiece(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of('/'), text.size()));
  const std::string_view piece = text.substr(0, text.find('/'));
  text.remove_prefix(piece.size());
  text.remove_prefix(std::min(text.find_first_not_of('/'), text.size()));
  return piece;
}

/// The document, which is there if the text was JSON.
platform::JSONDocument required(std::optional<platform::JSONDocument> document) {
  if (!document) throwCorrupted("The given data was not valid JSON.");
  return *std::move(document);
}

}  // namespace

platform::JSONDocument parseDocument(std::string_view text) {
  return required(platform::JSONDocument::parse(text));
}

platform::JSONDocument consumeDocument(std::string text) {
  return required(platform::JSONDocument::consume(std::move(text)));
}

void throwMissing(std::string_view key) {
  throw CodingError(CodingError::Kind::keyNotFound,
                    "No value associated with key \"" + std::string(key) + "\".");
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
  writer.string(uuid);
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
  std::string_view text = expect(value.string(), value, "a string");
  const std::string_view first = takePiece(text);
  const std::string_view second = takePiece(text);
  const platform::DateFormatter& formatter = dates.pickupWindow();
  const bool areTwo = !second.empty() && text.empty();
  const auto start = areTwo ? formatter.date(first) : std::nullopt;
  const auto end = start ? formatter.date(second) : std::nullopt;
  if (!end) throwCorrupted("Invalid date range format");
  return {*start, *end};
}

void WireForm<PickupWindow>::encode(JSONWriter& writer, const PickupWindow& window,
                                    const Dates& dates) {
  const platform::DateFormatter& formatter = dates.pickupWindow();
  writer.string(formatter.string(window.start) + "/" + formatter.string(window.end));
}

}  // namespace ovinta::wire
