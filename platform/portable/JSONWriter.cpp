#include <charconv>
#include <cmath>

#include "platform/JSON.h"
#include "platform/portable/UTF8.h"

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

void appendEscape(std::string& text, unsigned char byte, char escape) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text += '\\';
  text += escape;
  if (escape == 'u') {
    text += "00";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xf];
  }
}

void appendString(std::string& text, std::string_view value) {
  text += '"';
  std::size_t start = 0;
  unsigned char allBits = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const auto byte = static_cast<unsigned char>(value[i]);
    allBits |= byte;
    const char escape = kEscapes[byte];
    if (escape == 0) continue;
    text.append(value, start, i - start);
    appendEscape(text, byte, escape);
    start = i + 1;
  }
  if (allBits >= 0x80 && !portable::isUTF8(value)) {
    throw CodingError(CodingError::Kind::invalidValue, "The string is not UTF-8");
  }
  text.append(value, start);
  text += '"';
}

template <class T>
void appendNumber(std::string& text, T value) {
  if constexpr (std::is_floating_point_v<T>) {
    if (!std::isfinite(value)) {
      throw CodingError(CodingError::Kind::invalidValue, "The number is not finite");
    }
  }
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  text.append(buffer.data(), result.ptr);
  // "-0" would read back as the integer, which has no sign.
  if constexpr (std::is_floating_point_v<T>) {
    if (value == 0 && std::signbit(value)) text += ".0";
  }
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

void JSONWriter::separate() {
  if (needsComma_) text_ += ',';
  needsComma_ = true;
}

void JSONWriter::beginObject() {
  separate();
  text_ += '{';
  needsComma_ = false;
}

void JSONWriter::endObject() {
  text_ += '}';
  needsComma_ = true;
}

void JSONWriter::beginArray() {
  separate();
  text_ += '[';
  needsComma_ = false;
}

void JSONWriter::endArray() {
  text_ += ']';
  needsComma_ = true;
}

void JSONWriter::key(std::string_view key) {
  separate();
  appendString(text_, key);
  text_ += ':';
  needsComma_ = false;
}

void JSONWriter::null() {
  separate();
  text_ += "null";
}

void JSONWriter::boolean(bool value) {
  separate();
  text_ += value ? "true" : "false";
}

void JSONWriter::integer(std::int64_t value) {
  separate();
  appendNumber(text_, value);
}

void JSONWriter::number(double value) {
  separate();
  const std::size_t start = text_.size();
  appendNumber(text_, value);
  const bool isMarked = text_.find_first_of(".e", start) != std::string::npos;
  if (marksDoubles_ && !isMarked) text_ += ".0";
}

void JSONWriter::number(float value) {
  separate();
  appendNumber(text_, value);
}

void JSONWriter::string(std::string_view value) {
  separate();
  appendString(text_, value);
}

void JSONWriter::value(const Value& value) { std::visit(ValueVisitor{*this}, value.storage); }

}  // namespace ovinta::platform
