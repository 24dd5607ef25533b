#include "platform/portable/FixedPatternDate.h"

#include <algorithm>
#include <array>

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
constexpr std::string_view kShape = "0000-00-00T00:00:00.000";

/// The places of those characters.
constexpr auto kSeparators = [] {
  constexpr auto isSeparator = [](char c) { return c != '0'; };
  std::array<std::size_t, std::ranges::count_if(kShape, isSeparator)> places{};
  auto* next = places.data();
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    if (isSeparator(kShape[i])) *next++ = i;
  }
  return places;
}();

constexpr year kFirstYear{1600};
constexpr year kLastYear{9999};
constexpr hours kOffsetLimit{15};
// The first and the last date, each a day from the limit to make room for the offset.
constexpr Date kFirstDate{std::chrono::sys_days{kFirstYear / 1 / 2}};
constexpr Date kLastDate{std::chrono::sys_days{kLastYear / 12 / 31}};

/// Reads the parts of a text that is long enough. What is wrong is noted instead of branched on,
/// because nearly all texts are as they should be.
class Parts {
 public:
  explicit Parts(const char* text) : text_(text) {}

  /// The number that the two characters from `place` on stand for, which must be digits.
  unsigned two(std::size_t place) { return digit(place) * 10 + digit(place + 1); }
  unsigned digit(std::size_t place) {
    const unsigned value = static_cast<unsigned char>(text_[place]) - unsigned{'0'};
    isWrong_ |= value > 9;
    return value;
  }
  void expect(std::size_t place, char c) { isWrong_ |= text_[place] != c; }

  bool areRight() const { return !isWrong_; }

 private:
  const char* text_;
  bool isWrong_ = false;
};

std::optional<minutes> readOffset(std::string_view text, OffsetStyle style) {
  if (style == OffsetStyle::extended && text == "Z") return minutes(0);
  const std::size_t gap = style == OffsetStyle::extended ? 1 : 0;
  if (text.size() != 5 + gap || (text[0] != '+' && text[0] != '-')) return std::nullopt;
  Parts parts(text.data());
  const unsigned hour = parts.two(1);
  const unsigned minute = parts.two(3 + gap);
  if (gap == 1) parts.expect(3, ':');
  const minutes offset = hours(hour) + minutes(minute);
  if (!parts.areRight() || minute > 59 || offset >= kOffsetLimit) return std::nullopt;
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
  if (text.size() <= kShape.size()) return std::nullopt;
  Parts parts(text.data());
  const unsigned fullYear = parts.two(0) * 100 + parts.two(2);
  const std::chrono::year_month_day day{year(static_cast<int>(fullYear)),
                                        std::chrono::month(parts.two(5)),
                                        std::chrono::day(parts.two(8))};
  const unsigned hour = parts.two(11);
  const unsigned minute = parts.two(14);
  const unsigned second = parts.two(17);
  const unsigned thousandths = parts.digit(20) * 100 + parts.two(21);
  for (const std::size_t place : kSeparators) parts.expect(place, kShape[place]);
  if (!parts.areRight() || !day.ok() || day.year() < kFirstYear || hour > 23 || minute > 59 ||
      second > 59) {
    return std::nullopt;
  }
  const auto offset = readOffset(text.substr(kShape.size()), style);
  if (!offset) return std::nullopt;
  return std::chrono::sys_days(day) + hours(hour) + minutes(minute) + seconds(second) +
         milliseconds(thousandths) - *offset;
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
