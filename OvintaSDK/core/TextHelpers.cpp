#include "OvintaSDK/core/TextHelpers.h"

#include <algorithm>

#include "platform/Services.h"

namespace ovinta {
namespace {

/// The number of bytes that the UTF-8 sequence beginning with `lead` takes.
std::size_t sequenceLength(unsigned char lead) {
  if (lead >= 0xF0) return 4;
  if (lead >= 0xE0) return 3;
  return lead >= 0xC0 ? 2 : 1;
}

char32_t decodeScalar(std::string_view sequence) {
  const auto lead = static_cast<unsigned char>(sequence.front());
  if (sequence.size() == 1) return lead;
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
    const std::size_t length =
        std::min(sequenceLength(static_cast<unsigned char>(text.front())), text.size());
    const std::string_view sequence = text.substr(0, length);
    if (!words.empty() && rules.isUppercaseLetter(decodeScalar(sequence))) words += ' ';
    words += sequence;
    text.remove_prefix(length);
  }
  return words;
}

std::optional<std::string> presence(std::optional<std::string> text) {
  if (text && text->empty()) text.reset();
  return text;
}

}  // namespace ovinta
