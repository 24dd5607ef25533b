#include "platform/linux/text/ICUText.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <charconv>

namespace ovinta::platform::linuxos {

namespace {

/// The end of the run of characters that begins at `start` and is white space throughout, or
/// nowhere.
std::int32_t endOfRun(std::string_view text, std::int32_t start, bool white) {
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t end = start;
  while (end < length) {
    std::int32_t next = end;
    UChar32 scalar;
    U8_NEXT(text.data(), next, length, scalar);
    if ((scalar >= 0 && u_isUWhiteSpace(scalar)) != white) break;
    end = next;
  }
  return end;
}

void appendCapitalizedWord(std::string& result, std::string_view word) {
  constexpr const char* kNoLocale = "";
  UErrorCode status = U_ZERO_ERROR;
  icu::StringByteSink<std::string> sink(&result);
  icu::CaseMap::utf8ToTitle(kNoLocale, U_TITLECASE_WHOLE_STRING, nullptr,
                            icu::StringPiece(word.data(), static_cast<std::int32_t>(word.size())),
                            sink, nullptr, status);
}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

bool ICUText::isUppercaseLetter(char32_t scalar) const {
  const auto category = u_charType(static_cast<UChar32>(scalar));
  return category == U_UPPERCASE_LETTER || category == U_TITLECASE_LETTER;
}

std::string ICUText::capitalized(std::string_view text) const {
  std::string result;
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t start = 0; start < length;) {
    const std::int32_t word = endOfRun(text, start, true);
    const std::int32_t end = endOfRun(text, word, false);
    result += text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(word - start));
    appendCapitalizedWord(
        result, text.substr(static_cast<std::size_t>(word), static_cast<std::size_t>(end - word)));
    start = end;
  }
  return result;
}

std::optional<double> ICUText::decimal(std::string_view text) const {
  const bool hasSign = !text.empty() && (text.front() == '+' || text.front() == '-');
  const std::string_view magnitude = text.substr(hasSign ? 1 : 0);
  // The first character is looked at, because what begins otherwise may still be a name such as
  // "inf" to the number reader.
  if (magnitude.empty() || !(isDigit(magnitude.front()) || magnitude.front() == '.')) return {};
  double number = 0;
  const char* const end = magnitude.data() + magnitude.size();
  const auto [rest, error] = std::from_chars(magnitude.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return text.front() == '-' ? -number : number;
}

}  // namespace ovinta::platform::linuxos
