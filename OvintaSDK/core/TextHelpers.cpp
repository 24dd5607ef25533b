#include "OvintaSDK/core/TextHelpers.h"

#include <algorithm>

#include "platform/Services.h"

namespace ovinta {
namespace {

/// The number of bytes of the UTF-8 sequence that the text begins with; 1 for a byte that begins
/// none.
std::size_t sequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  const std::string_view rest = text.substr(1, length - 1);
  const bool isWhole = rest.size() == length - 1 &&
                       std::ranges::all_of(rest, [](char byte) { return (byte & 0xC0) == 0x80; });
  return isWhole ? length : 1;
}

char32_t decodeScalar(std::string_view sequence) {
  constexpr char32_t kReplacement = 0xFFFD;
  const auto lead = static_cast<unsigned char>(sequence.front());
  if (sequence.size() == 1) return lead < 0x80 ? lead : kReplacement;
  char32_t scalar = lead & (0x7FU >> sequence.size());
  for (const char byte : sequence.substr(1)) {
    scalar = scalar << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  return scalar;
}

}  // namespace

std::string wordsFromCamelCase(std::string_view text) {
  const platform::Text& rules = *platform::services().text;
  std::string words;
  words.reserve(text.size() + text.size() / 4);
  while (!text.empty()) {
    const std::string_view sequence = text.substr(0, sequenceLength(text));
    if (!words.empty() && rules.isUppercaseLetter(decodeScalar(sequence))) words += ' ';
    words += sequence;
    text.remove_prefix(sequence.size());
  }
  return words;
}

std::optional<std::string> presence(std::optional<std::string> text) {
  if (text && text->empty()) text.reset();
  return text;
}

}  // namespace ovinta
