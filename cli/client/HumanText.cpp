#include "cli/client/HumanText.h"

#include <locale.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <cwchar>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

bool isNested(const Value& value) { return value.as<Dictionary>() || value.as<List>(); }

void append(std::string& text, const Value& value, const std::string& indent) {
  if (const auto* fields = value.as<Dictionary>()) {
    for (const auto& [name, field] : *fields) {
      text += indent + visibleText(name) + ":";
      if (isNested(field)) {
        text += "\n";
        append(text, field, indent + "  ");
      } else {
        text += " " + scalarText(field) + "\n";
      }
    }
  } else if (const auto* list = value.as<List>()) {
    if (list->empty()) text += indent + "(none)\n";
    const char* separator = "";
    for (const Value& element : *list) {
      text += separator;
      append(text, element, indent);
      separator = isNested(element) ? "\n" : "";
    }
  } else {
    text += indent + scalarText(value) + "\n";
  }
}

struct CodeRange {
  char32_t first;
  char32_t last;
};

/// Control characters, marks of direction, separators of lines, and what takes no room.
constexpr auto kTreacherous = std::to_array<CodeRange>({{0x0000, 0x001F},
                                                        {0x007F, 0x009F},
                                                        {0x00AD, 0x00AD},
                                                        {0x034F, 0x034F},
                                                        {0x061C, 0x061C},
                                                        {0x115F, 0x1160},
                                                        {0x17B4, 0x17B5},
                                                        {0x180B, 0x180F},
                                                        {0x200B, 0x200F},
                                                        {0x2028, 0x202E},
                                                        {0x2060, 0x206F},
                                                        {0x3164, 0x3164},
                                                        {0xFEFF, 0xFEFF},
                                                        {0xFFA0, 0xFFA0},
                                                        {0xFFF0, 0xFFFB},
                                                        {0x1D173, 0x1D17A},
                                                        {0xE0000, 0xE0FFF}});

bool isTreacherous(char32_t code) {
  return std::ranges::any_of(kTreacherous, [code](const CodeRange& range) {
    return range.first <= code && code <= range.last;
  });
}

std::string escaped(std::string mark, char32_t code, unsigned digits) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  while (digits-- > 0) mark += kDigits[(code >> (4 * digits)) & 0xFU];
  return mark;
}

/// The escape that strings of many languages have for the character: two, four or eight digits.
std::string escaped(char32_t code) {
  if (code < 0x100) return escaped("\\x", code, 2);
  return code < 0x10000 ? escaped("\\u", code, 4) : escaped("\\U", code, 8);
}

/// The escape that JSON has for the character: four digits, and a pair of surrogates where they do
/// not suffice.
std::string escapedInJSON(char32_t code) {
  if (code < 0x10000) return escaped("\\u", code, 4);
  const char32_t rest = code - 0x10000;
  return escaped("\\u", 0xD800 + (rest >> 10), 4) + escaped("\\u", 0xDC00 + (rest & 0x3FF), 4);
}

}  // namespace

std::string visibleText(std::string_view text, bool keepsLines) {
  std::string visible;
  for (Glyph glyph; !text.empty(); text.remove_prefix(glyph.bytes)) {
    glyph = firstGlyph(text);
    const bool isKept = keepsLines && glyph.code == U'\n';
    if (isKept || (glyph.code && !isTreacherous(*glyph.code))) {
      visible += text.substr(0, glyph.bytes);
    } else {
      visible += escaped(glyph.code.value_or(static_cast<unsigned char>(text.front())));
    }
  }
  return visible;
}

std::string visibleJSON(const Value& value) {
  const std::string written = platform::writeJSON(value);
  std::string visible;
  // What is to be escaped stands in texts only, and what JSON itself forbids is escaped already.
  std::string_view text = written;
  for (Glyph glyph; !text.empty(); text.remove_prefix(glyph.bytes)) {
    glyph = firstGlyph(text);
    const bool isKept = !glyph.code || !isTreacherous(*glyph.code);
    visible += isKept ? std::string(text.substr(0, glyph.bytes)) : escapedInJSON(*glyph.code);
  }
  return visible;
}

Glyph firstGlyph(std::string_view text) {
  static const locale_t kUTF8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t before = kUTF8 ? ::uselocale(kUTF8) : nullptr;
  std::mbstate_t state{};
  wchar_t character = 0;
  const std::size_t bytes = std::mbrtowc(&character, text.data(), text.size(), &state);
  const bool isOne = bytes > 0 && bytes <= text.size();
  const int columns = isOne ? ::wcwidth(character) : -1;
  if (before) ::uselocale(before);
  // For a NUL the conversion answers 0 bytes, and it is a character all the same.
  const bool isNul = bytes == 0;
  return {.bytes = isOne ? bytes : 1,
          .columns = columns < 0 ? 1 : static_cast<std::size_t>(columns),
          .code = isOne || isNul ? std::optional(static_cast<char32_t>(character)) : std::nullopt};
}

std::string utcText(platform::Date date, const char* format) {
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

std::string scalarText(const Value& value) {
  if (const auto* text = value.as<std::string>()) return visibleText(*text);
  return visibleJSON(value);
}

std::string humanText(const Value& value) {
  std::string text;
  append(text, value, "");
  return text;
}

}  // namespace ovinta::cli
