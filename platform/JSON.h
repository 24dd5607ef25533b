#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/CodingError.h"
#include "platform/JSONText.h"
#include "platform/Value.h"

namespace ovinta::platform {

/// One value inside a `JSONDocument`; valid as long as the document lives. Cheap to copy.
class JSONValue {
 public:
  enum class Kind { null, boolean, number, string, array, object };

  Kind kind() const;

  /// The value when it is of that kind; otherwise absent.
  std::optional<bool> boolean() const;
  /// A number without a fractional part within the range, to the last digit; `5.0` and `1e3` count.
  std::optional<std::int64_t> integer() const;
  /// The nearest double; absent for a number beyond the range of doubles.
  std::optional<double> number() const;
  std::optional<std::string_view> string() const;

  /// The value as a free-standing copy. A number is an integer when it is written as one, or
  /// without an exponent and no double holds it, and 64 bits do; otherwise a double, and null
  /// beyond the range of doubles. What is nested more than 1,024 deep is null.
  Value copy() const;

 private:
  friend class JSONDocument;
  friend class JSONArrayCursor;
  friend class JSONObjectCursor;

  struct Storage {
    const void* document = nullptr;
    std::size_t index = 0;
  };
  Storage storage_;
};

/// Walks the elements of an array.
class JSONArrayCursor {
 public:
  /// `array` must be of kind array.
  explicit JSONArrayCursor(const JSONValue& array);
  /// The number of elements of the whole array; from 2^24 - 1 on it is that number.
  std::size_t size() const { return size_; }
  /// Steps to the next element; false at the end.
  bool next(JSONValue& element);

 private:
  JSONValue::Storage position_;
  JSONValue::Storage end_;
  std::size_t size_ = 0;
};

/// Walks the members of an object in the order of the text.
class JSONObjectCursor {
 public:
  /// `object` must be of kind object.
  explicit JSONObjectCursor(const JSONValue& object);
  /// Steps to the next member; false at the end.
  bool next(std::string_view& key, JSONValue& value);

 private:
  JSONValue::Storage position_;
  JSONValue::Storage end_;
};

/// A parsed JSON text (RFC 8259, strict, UTF-8). Numbers may be of any size and values nested to
/// any depth: it is those who read a value that say whether it fits.
class JSONDocument {
 public:
  /// The document; absent when the text is not JSON.
  static std::optional<JSONDocument> parse(std::string_view text);

  JSONDocument(JSONDocument&&) noexcept;
  JSONDocument& operator=(JSONDocument&&) noexcept;
  ~JSONDocument();

  JSONValue root() const;

 private:
  struct Parsed;
  explicit JSONDocument(std::unique_ptr<Parsed> parsed);
  std::unique_ptr<Parsed> parsed_;
};

/// Writes a JSON text, without blanks, members in the order in which they are given. Numbers take
/// the shortest form that reads back to the same value in their own width. Strings that are not
/// UTF-8 and numbers that are not finite throw a `CodingError` of kind `invalidValue`. Calls must
/// form one JSON value.
class JSONWriter {
 public:
  /// `marksDoubles`: a double without a fraction takes ".0", so that it reads back as a double.
  explicit JSONWriter(bool marksDoubles = false) : marksDoubles_(marksDoubles) {}

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  void key(std::string_view key);
  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void number(double value);
  void number(float value);
  void string(std::string_view value);
  /// The whole value, dictionaries in the order of their keys.
  void value(const Value& value);

  /// The text written so far; the writer is spent.
  std::string take() { return std::move(text_); }

 private:
  void separate();

  bool marksDoubles_;
  std::string text_;
  bool needsComma_ = false;
};

/// The JSON text of a value, for values that are known to have one. Throws `CodingError` as
/// `JSONWriter` does.
inline std::string writeJSON(const Value& value) {
  auto text = jsonText(value);
  if (!text) throw CodingError(text.error());
  return *std::move(text);
}

}  // namespace ovinta::platform
