#pragma once

#include <simdjson.h>

#include <bit>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/JSON.h"

namespace ovinta::platform::portable {

/// A handle of simdjson as a place, and back. Handles are plain values: copying the bytes copies
/// the handle.
template <class Handle>
JSONPlace placeOf(const Handle& handle) {
  return std::bit_cast<JSONPlace>(handle);
}
template <class Handle>
Handle handleAt(const JSONPlace& place) {
  return std::bit_cast<Handle>(place);
}

/// A JSON text as simdjson has parsed it, and the text, which knows more of some numbers.
class ParsedJSON {
 public:
  /// `text` has `JSONDocument::kRoom` bytes at its end that are no part of it.
  explicit ParsedJSON(std::string text);

  /// Parses the text; false when it is not JSON.
  bool parse();

  /// Gives back the text, when it is large and no number needs it.
  void releaseText();

  JSONValue root() const {
    JSONValue value;
    read(document_.root(), value);
    return value;
  }

  /// Sets the value to that of an element of this document.
  void read(const simdjson::dom::element& element, JSONValue& value) const;

  /// The value of a number that is a double to simdjson: the integer that it is, if any, and the
  /// nearest double, if any.
  std::optional<std::int64_t> integerOf(const simdjson::dom::element& element) const;
  std::optional<double> nearestOf(const simdjson::dom::element& element) const;
  /// The integer that the number is; absent too when it is written with an exponent, as writers do
  /// with the shortest text that gives the double back.
  std::optional<std::int64_t> plainIntegerOf(const simdjson::dom::element& element) const;

 private:
  /// What the text says of a number.
  struct WrittenNumber {
    std::optional<std::int64_t> integer;
    double nearest = 0;
    bool hasExponent = false;
  };
  struct PlaceHash {
    std::size_t operator()(const JSONPlace& place) const { return place[0] ^ place[1]; }
  };

  simdjson::error_code parseAnySize();
  std::string_view text() const { return std::string_view(text_).substr(0, size_); }
  const WrittenNumber& writtenNumber(const simdjson::dom::element& element) const;

  std::string text_;
  std::size_t size_;
  simdjson::dom::document document_;
  /// The numbers whose double does not tell them exactly, by their places. They are found when one
  /// is first asked for.
  mutable std::unordered_map<JSONPlace, WrittenNumber, PlaceHash> writtenNumbers_;
  mutable std::once_flag numbersAreFound_;
};

inline void ParsedJSON::read(const simdjson::dom::element& element, JSONValue& value) const {
  using simdjson::dom::element_type;
  using Kind = JSONValue::Kind;
  value.isInteger_ = false;
  // Texts come first, since most values are texts.
  const element_type type = element.type();
  if (type == element_type::STRING) {
    value.kind_ = Kind::string;
    std::construct_at(&value.content_.string, element.get_string().value_unsafe());
    return;
  }
  switch (type) {
    case element_type::STRING:
    case element_type::NULL_VALUE:
      value.kind_ = Kind::null;
      return;
    case element_type::BOOL:
      value.kind_ = Kind::boolean;
      value.content_.boolean = element.get_bool().value_unsafe();
      return;
    case element_type::INT64:
      value.kind_ = Kind::number;
      value.isInteger_ = true;
      value.content_.integer = element.get_int64().value_unsafe();
      return;
    case element_type::UINT64:
    case element_type::DOUBLE:
      value.kind_ = Kind::number;
      break;
    case element_type::ARRAY:
      value.kind_ = Kind::array;
      break;
    case element_type::OBJECT:
      value.kind_ = Kind::object;
      break;
  }
  value.content_.place = placeOf(element);
  value.document_ = this;
}

}  // namespace ovinta::platform::portable
