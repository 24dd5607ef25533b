#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/CodingError.h"
#include "platform/JSONText.h"
#include "platform/UUID.h"
#include "platform/Value.h"

namespace ovinta::platform {

namespace portable {
class ParsedJSON;
}

/// A place in a parsed document, as the JSON library knows it; only its bytes are looked at here.
using JSONPlace = std::array<std::uintptr_t, 2>;

/// One value inside a `JSONDocument`; valid as long as the document lives. Cheap to copy. It holds
/// what is asked for most: its kind, texts, truth values, and the numbers that are written as
/// integers.
class JSONValue {
 public:
  enum class Kind : std::uint8_t { null, boolean, number, string, array, object };

  Kind kind() const { return kind_; }

  /// The value when it is of that kind; otherwise absent.
  std::optional<bool> boolean() const {
    return kind_ == Kind::boolean ? std::optional(content_.boolean) : std::nullopt;
  }
  /// A number without a fractional part within the range, to the last digit; `5.0` and `1e3` count.
  std::optional<std::int64_t> integer() const {
    if (isInteger_) return content_.integer;
    return kind_ == Kind::number ? integerAtPlace() : std::nullopt;
  }
  /// The nearest double; absent for a number beyond the range of doubles.
  std::optional<double> number() const {
    if (isInteger_) return static_cast<double>(content_.integer);
    return kind_ == Kind::number ? numberAtPlace() : std::nullopt;
  }
  std::optional<std::string_view> string() const {
    return kind_ == Kind::string ? std::optional(content_.string) : std::nullopt;
  }

  /// The value as a free-standing copy. A number is an integer when it is written as one, or
  /// without an exponent and no double holds it, and 64 bits do; otherwise a double, and null
  /// beyond the range of doubles. What is nested more than 1,024 deep is null.
  Value copy() const;

 private:
  friend class JSONDocument;
  friend class JSONArrayCursor;
  friend class JSONObjectCursor;
  friend class portable::ParsedJSON;

  /// What the kind, and for a number `isInteger_`, says which one it is; `place` for the rest.
  union Content {
    std::string_view string = {};
    std::int64_t integer;
    bool boolean;
    JSONPlace place;
  };

  /// What a number is that is not written as an integer of 64 bits.
  std::optional<std::int64_t> integerAtPlace() const;
  std::optional<double> numberAtPlace() const;

  Content content_;
  const portable::ParsedJSON* document_ = nullptr;
  Kind kind_ = Kind::null;
  bool isInteger_ = false;
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
  JSONPlace position_{};
  JSONPlace end_{};
  const portable::ParsedJSON* document_ = nullptr;
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
  JSONPlace position_{};
  JSONPlace end_{};
  const portable::ParsedJSON* document_ = nullptr;
};

/// A parsed JSON text (RFC 8259, strict, UTF-8). Numbers may be of any size and values nested to
/// any depth: it is those who read a value that say whether it fits.
class JSONDocument {
 public:
  /// The room that a text takes beyond its own bytes while it is parsed. A text with a capacity
  /// that has it is not copied by `consume`; whoever receives a text, such as a `URLSession`, may
  /// make such room for it.
  static constexpr std::size_t kRoom = 64;

  /// The document; absent when the text is not JSON.
  static std::optional<JSONDocument> parse(std::string_view text);
  /// The same for a text that nobody needs any more: it is parsed where it stands and, when it is
  /// large, given back as soon as the document does without it.
  static std::optional<JSONDocument> consume(std::string text);

  JSONDocument(JSONDocument&&) noexcept;
  JSONDocument& operator=(JSONDocument&&) noexcept;
  ~JSONDocument();

  JSONValue root() const;

 private:
  explicit JSONDocument(std::unique_ptr<portable::ParsedJSON> parsed);
  std::unique_ptr<portable::ParsedJSON> parsed_;
};

/// A key as it stands in a text: between quotes, the colon after it.
class WrittenKey {
 public:
  /// `name` has small letters and underscores alone, none of which takes an escape. Another one, or
  /// one that is too long, does not compile.
  consteval explicit WrittenKey(std::string_view name) : size_(name.size() + 3) {
    for (const char c : name) {
      if (c != '_' && (c < 'a' || c > 'z')) throw std::invalid_argument("an escape");
    }
    text_[0] = text_[size_ - 2] = '"';
    text_[size_ - 1] = ':';
    name.copy(&text_[1], name.size());
  }

  constexpr std::string_view text() const { return {text_.data(), size_}; }

 private:
  std::array<char, 64> text_{};
  std::size_t size_;
};

/// Writes a JSON text, without blanks, members in the order in which they are given. Numbers take
/// the shortest form that reads back to the same value in their own width. Strings that are not
/// UTF-8 and numbers that are not finite throw a `CodingError` of kind `invalidValue`. Calls must
/// form one JSON value.
class JSONWriter {
 public:
  /// `marksDoubles`: a double without a fraction takes ".0", so that it reads back as a double.
  explicit JSONWriter(bool marksDoubles = false) : marksDoubles_(marksDoubles) {}

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }
  void key(std::string_view key);
  void writtenKey(const WrittenKey& key) {
    literal(key.text());
    needsComma_ = false;
  }
  void null() { literal("null"); }
  void boolean(bool value) {
    using namespace std::string_view_literals;
    literal(value ? "true"sv : "false"sv);
  }
  void integer(std::int64_t value);
  void number(double value);
  void number(float value);
  void string(std::string_view value);
  /// The text form of an identifier, as a string.
  void string(const UUID& value);
  /// The whole value, dictionaries in the order of their keys.
  void value(const Value& value);

  /// The text written so far; the writer is spent.
  std::string take();

 private:
  /// Room for a comma, where there has to be one, and `length` characters. Of the characters,
  /// whose place it gives, those up to where `advance` is told are kept.
  char* separated(std::size_t length) {
    if (length >= buffer_.size() - size_) grow(length);
    if (needsComma_) buffer_[size_++] = ',';
    needsComma_ = true;
    return buffer_.data() + size_;
  }
  void advance(const char* end) { size_ = static_cast<std::size_t>(end - buffer_.data()); }
  void grow(std::size_t length);

  void begin(char bracket) {
    char* const place = separated(1);
    *place = bracket;
    advance(place + 1);
    needsComma_ = false;
  }
  void end(char bracket) {
    needsComma_ = false;
    begin(bracket);
    needsComma_ = true;
  }
  void literal(std::string_view text) {
    char* const place = separated(text.size());
    text.copy(place, text.size());
    advance(place + text.size());
  }
  void escaped(std::string_view value);
  template <class T>
  char* finite(T value);

  bool marksDoubles_;
  bool needsComma_ = false;
  /// The first `size_` characters are the text, the rest is room: to write into a string costs less
  /// than to append to it.
  std::string buffer_;
  std::size_t size_ = 0;
};

/// The JSON text of a value, for values that are known to have one. Throws `CodingError` as
/// `JSONWriter` does.
inline std::string writeJSON(const Value& value) {
  auto text = jsonText(value);
  if (!text) throw CodingError(text.error());
  return *std::move(text);
}

}  // namespace ovinta::platform
