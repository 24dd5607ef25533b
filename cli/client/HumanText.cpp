#include "cli/client/HumanText.h"

#include <locale.h>

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

}  // namespace

std::string visibleText(std::string_view text, bool keepsLines) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string visible;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto byte = static_cast<unsigned char>(text[i]);
    // U+0080 to U+009F are control characters of two bytes.
    const bool isLong =
        byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (isLong) byte = static_cast<unsigned char>(text[++i]);
    const bool isKept = keepsLines && byte == '\n';
    if (isLong || byte == 0x7F || (byte < 0x20 && !isKept)) {
      visible += std::string("\\x") + kDigits[byte / 16U] + kDigits[byte % 16U];
    } else {
      visible += text[i];
    }
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
  return {.bytes = isOne ? bytes : 1,
          .columns = columns < 0 ? 1 : static_cast<std::size_t>(columns)};
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
  return platform::writeJSON(value);
}

std::string humanText(const Value& value) {
  std::string text;
  append(text, value, "");
  return text;
}

}  // namespace ovinta::cli
