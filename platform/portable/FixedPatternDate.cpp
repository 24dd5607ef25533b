#include "platform/portable/FixedPatternDate.h"

namespace ovinta::platform::portable {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year;

/// The shape of the texts: digits stand in the place of a 0, all other characters for themselves.
constexpr char kShape[] = "0000-00-00T00:00:00.000";
constexpr std::size_t kShapeLength = sizeof kShape - 1;

constexpr year kFirstYear{1600};
constexpr year kLastYear{9999};
constexpr hours kOffsetLimit{15};
// The first and the last date, each a day from the limit to make room for the offset.
constexpr Date kFirstDate{std::chrono::sys_days{kFirstYear / 1 / 2}};
constexpr Date kLastDate{std::chrono::sys_days{kLastYear / 12 / 31}};

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether the text has the shape. Shapes are known when compiling, so that one comparison after
/// the other, without a branch between them, is what costs least.
template <std::size_t N>
bool hasShape(std::string_view text, const char (&shape)[N]) {
  constexpr std::size_t kLength = N - 1;
  if (text.size() != kLength) return false;
  bool differs = false;
  for (std::size_t i = 0; i < kLength; ++i) {
    differs |= shape[i] == '0' ? !isDigit(text[i]) : text[i] != shape[i];
  }
  return !differs;
}

/// The number that the `length` characters of the text from `start` on stand for, which are all
/// digits.
unsigned digits(std::string_view text, std::size_t start, std::size_t length) {
  unsigned value = 0;
  for (const char c : text.substr(start, length)) value = value * 10 + unsigned(c - '0');
  return value;
}

std::optional<minutes> readOffset(std::string_view text, OffsetStyle style) {
  if (style == OffsetStyle::extended && text == "Z") return minutes(0);
  if (text.empty() || (text[0] != '+' && text[0] != '-')) return std::nullopt;
  const std::string_view size = text.substr(1);
  const bool isExtended = style == OffsetStyle::extended;
  if (isExtended ? !hasShape(size, "00:00") : !hasShape(size, "0000")) return std::nullopt;
  const unsigned minute = digits(size, size.size() - 2, 2);
  const minutes offset = hours(digits(size, 0, 2)) + minutes(minute);
  if (minute > 59 || offset >= kOffsetLimit) return std::nullopt;
  return text[0] == '-' ? -offset : offset;
}

/// Writes the last `length` decimal digits of the value from `out` on.
void putDigits(char* out, unsigned value, std::size_t length) {
  for (std::size_t i = length; i-- > 0; value /= 10) out[i] = static_cast<char>('0' + value % 10);
}

void appendOffset(std::string& text, minutes offset, OffsetStyle style) {
  if (style == OffsetStyle::extended && offset == minutes(0)) {
    text += 'Z';
    return;
  }
  const auto size = static_cast<unsigned>(std::chrono::abs(offset).count());
  text += offset < minutes(0) ? '-' : '+';
  char buffer[4];
  putDigits(buffer, size / 60 * 100 + size % 60, 4);
  text.append(buffer, 2);
  if (style == OffsetStyle::extended) text += ':';
  text.append(buffer + 2, 2);
}

}  // namespace

std::optional<Date> readFixedDate(std::string_view text, OffsetStyle style) {
  if (!hasShape(text.substr(0, kShapeLength), kShape)) return std::nullopt;
  const auto offset = readOffset(text.substr(kShapeLength), style);
  if (!offset) return std::nullopt;
  const std::chrono::year_month_day day{year(static_cast<int>(digits(text, 0, 4))),
                                        std::chrono::month(digits(text, 5, 2)),
                                        std::chrono::day(digits(text, 8, 2))};
  const unsigned hour = digits(text, 11, 2);
  const unsigned minute = digits(text, 14, 2);
  const unsigned second = digits(text, 17, 2);
  if (!day.ok() || day.year() < kFirstYear || hour > 23 || minute > 59 || second > 59) {
    return std::nullopt;
  }
  return std::chrono::sys_days(day) + hours(hour) + minutes(minute) + seconds(second) +
         milliseconds(digits(text, 20, 3)) - *offset;
}

std::optional<std::string> writeFixedDate(Date date, seconds offset, OffsetStyle style) {
  if (date < kFirstDate || date >= kLastDate) return std::nullopt;
  if (std::chrono::abs(offset) >= kOffsetLimit || offset % minutes(1) != seconds(0)) {
    return std::nullopt;
  }
  const auto local = floor<milliseconds>(date) + offset;
  const auto midnight = floor<days>(local);
  const std::chrono::year_month_day day(midnight);
  const std::chrono::hh_mm_ss time(local - midnight);

  std::string text(kShape);
  putDigits(&text[0], static_cast<unsigned>(int(day.year())), 4);
  putDigits(&text[5], unsigned(day.month()), 2);
  putDigits(&text[8], unsigned(day.day()), 2);
  putDigits(&text[11], static_cast<unsigned>(time.hours().count()), 2);
  putDigits(&text[14], static_cast<unsigned>(time.minutes().count()), 2);
  putDigits(&text[17], static_cast<unsigned>(time.seconds().count()), 2);
  putDigits(&text[20], static_cast<unsigned>(time.subseconds().count()), 3);
  appendOffset(text, std::chrono::duration_cast<minutes>(offset), style);
  return text;
}

}  // namespace ovinta::platform::portable
