#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

#include "platform/JSON.h"
#include "platform/portable/UTF8.h"
#include "platform/portable/UUIDText.h"

namespace ovinta::platform {

namespace {

/// What stands behind the backslash for each byte: 0 for bytes that stand for themselves, 'u' for
/// those that take the hexadecimal form.
constexpr std::array<char, 256> kEscapes = [] {
  std::array<char, 256> table{};
  for (int byte = 0; byte < 0x20; ++byte) table[static_cast<std::size_t>(byte)] = 'u';
  table['\b'] = 'b';
  table['\t'] = 't';
  table['\n'] = 'n';
  table['\f'] = 'f';
  table['\r'] = 'r';
  table['"'] = '"';
  table['\\'] = '\\';
  return table;
}();

/// The longest form of one byte: \u001f.
constexpr std::size_t kLongestEscape = 6;

/// The longest number in its shortest form, with the mark of a double: -1.7976931348623157e+308.0.
constexpr std::size_t kLongestNumber = 32;

char* putEscape(char* out, unsigned char byte, char escape) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  *out++ = '\\';
  *out++ = escape;
  if (escape == 'u') {
    *out++ = '0';
    *out++ = '0';
    *out++ = kDigits[byte >> 4];
    *out++ = kDigits[byte & 0xf];
  }
  return out;
}

/// What marks a double that has no fraction.
constexpr std::string_view kFraction = ".0";

/// Writes the shortest form of a finite number, which has room.
template <class T>
char* putNumber(char* out, T value) {
  char* const end = std::to_chars(out, out + kLongestNumber, value).ptr;
  // "-0" would read back as the integer, which has no sign.
  const bool isNegativeZero = value == 0 && std::signbit(value);
  return isNegativeZero ? std::ranges::copy(kFraction, end).out : end;
}

using Word = std::uint64_t;

constexpr Word everyByte(unsigned char byte) { return ~Word{0} / 0xFF * byte; }

/// Whether one of the eight bytes is a zero.
constexpr bool hasZero(Word word) {
  return ((word - everyByte(0x01)) & ~word & everyByte(0x80)) != 0;
}

/// Whether one of the eight bytes takes an escape or is not ASCII.
constexpr bool isSpecial(Word word) {
  const bool hasControl = ((word - everyByte(0x20)) & everyByte(0x80)) != 0;
  return hasControl || (word & everyByte(0x80)) != 0 || hasZero(word ^ everyByte('"')) ||
         hasZero(word ^ everyByte('\\'));
}

Word wordAt(const char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// Whether the text stands for itself between quotes. May say no of one that does.
bool isPlain(std::string_view text) {
  constexpr std::size_t kStep = sizeof(Word);
  if (text.size() < kStep) {
    return std::ranges::none_of(text, [](char c) {
      return (c & 0x80) != 0 || kEscapes[static_cast<unsigned char>(c)] != 0;
    });
  }
  const char* const last = text.data() + text.size() - kStep;
  for (const char* at = text.data(); at < last; at += kStep) {
    if (isSpecial(wordAt(at))) return false;
  }
  return !isSpecial(wordAt(last));
}

/// Writes the alternative that a `Value` holds.
struct ValueVisitor {
  JSONWriter& writer;

  void operator()(std::nullptr_t) const { writer.null(); }
  void operator()(bool value) const { writer.boolean(value); }
  void operator()(std::int64_t value) const { writer.integer(value); }
  void operator()(double value) const { writer.number(value); }
  void operator()(const std::string& value) const { writer.string(value); }
  void operator()(const List& list) const {
    writer.beginArray();
    for (const Value& element : list) writer.value(element);
    writer.endArray();
  }
  void operator()(const Dictionary& dictionary) const {
    writer.beginObject();
    for (const auto& [name, member] : dictionary) {
      writer.key(name);
      writer.value(member);
    }
    writer.endObject();
  }
};

}  // namespace

void JSONWriter::grow(std::size_t length) {
  // An order event, the text that is written most, has room from the start.
  constexpr std::size_t kSmallest = 512;
  // One more is for the comma.
  buffer_.resize(std::max({kSmallest, buffer_.size() * 2, size_ + length + 1}));
}

std::string JSONWriter::take() {
  buffer_.resize(std::exchange(size_, 0));
  return std::move(buffer_);
}

void JSONWriter::key(std::string_view key) {
  string(key);
  needsComma_ = false;
  *separated(1) = ':';
  ++size_;
  needsComma_ = false;
}

/// Room for a number, which must be finite.
template <class T>
char* JSONWriter::finite(T value) {
  if (!std::isfinite(value)) {
    throw CodingError(CodingError::Kind::invalidValue, "The number is not finite");
  }
  return separated(kLongestNumber);
}

void JSONWriter::integer(std::int64_t value) {
  char* const place = separated(kLongestNumber);
  advance(std::to_chars(place, place + kLongestNumber, value).ptr);
}

void JSONWriter::number(double value) {
  char* const place = finite(value);
  char* end = putNumber(place, value);
  const bool isMarked = std::any_of(place, end, [](char c) { return c == '.' || c == 'e'; });
  if (marksDoubles_ && !isMarked) end = std::ranges::copy(kFraction, end).out;
  advance(end);
}

void JSONWriter::number(float value) { advance(putNumber(finite(value), value)); }

void JSONWriter::string(std::string_view value) {
  if (!isPlain(value)) return escaped(value);
  char* place = separated(value.size() + 2);
  *place++ = '"';
  place += value.copy(place, value.size());
  *place++ = '"';
  advance(place);
}

void JSONWriter::escaped(std::string_view value) {
  if (!portable::isUTF8(value)) {
    throw CodingError(CodingError::Kind::invalidValue, "The string is not UTF-8");
  }
  const auto escapes = static_cast<std::size_t>(std::ranges::count_if(
      value, [](char c) { return kEscapes[static_cast<unsigned char>(c)] != 0; }));
  char* out = separated(value.size() + escapes * (kLongestEscape - 1) + 2);
  *out++ = '"';
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    const char escape = kEscapes[byte];
    if (escape == 0) {
      *out++ = c;
    } else {
      out = putEscape(out, byte, escape);
    }
  }
  *out++ = '"';
  advance(out);
}

void JSONWriter::string(const UUID& value) {
  char* const place = separated(portable::kUUIDLength + 2);
  *place = '"';
  char* const end = portable::writeUUID(value, place + 1);
  *end = '"';
  advance(end + 1);
}

void JSONWriter::value(const Value& value) { std::visit(ValueVisitor{*this}, value.storage); }

}  // namespace ovinta::platform
