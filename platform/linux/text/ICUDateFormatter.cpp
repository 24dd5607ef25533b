#include "platform/linux/text/ICUDateFormatter.h"

#include <unicode/numsys.h>
#include <unicode/simpletz.h>
#include <unicode/uchar.h>

#include <array>
#include <cmath>

namespace ovinta::platform::linuxos {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

struct ShortcutPattern {
  std::string_view pattern;
  portable::OffsetStyle style;
};

constexpr std::array<ShortcutPattern, 2> kShortcutPatterns{{
    {"yyyy-MM-dd'T'HH:mm:ss.SSSZ", portable::OffsetStyle::basic},
    {"yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ", portable::OffsetStyle::extended},
}};

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

icu::Locale localeOf(const DateFormat& format) {
  icu::Locale locale = format.locale ? icu::Locale(format.locale->c_str()) : icu::Locale();
  if (format.calendar) {
    UErrorCode status = U_ZERO_ERROR;
    locale.setKeywordValue("calendar", format.calendar->c_str(), status);
  }
  return locale;
}

/// The offset that the format fixes. Where it is absent, or beyond what a zone can have, the
/// device's own zone counts.
std::optional<seconds> fixedOffsetOf(const DateFormat& format) {
  constexpr seconds kLimit = std::chrono::hours(18);
  if (!format.secondsFromGMT) return std::nullopt;
  const seconds offset(*format.secondsFromGMT);
  if (offset < -kLimit || offset > kLimit) return std::nullopt;
  return offset;
}

std::unique_ptr<icu::TimeZone> makeZone(std::optional<seconds> fixedOffset) {
  if (!fixedOffset) return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault());
  const auto offset = static_cast<std::int32_t>(milliseconds(*fixedOffset).count());
  return std::make_unique<icu::SimpleTimeZone>(offset, offset == 0 ? u"GMT" : u"");
}

bool hasLatinDigits(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberingSystem> digits(
      icu::NumberingSystem::createInstance(locale, status));
  return U_SUCCESS(status) && digits && std::string_view(digits->getName()) == "latn";
}

/// Whether the text is short enough to be a date, and so is each number in it. ICU reads numbers
/// into 32 bits and computes with them unchecked: it divides by zero for a fraction of 35 digits.
bool isOfDatesLength(const icu::UnicodeString& text) {
  constexpr std::int32_t kLongestText = 64;
  constexpr std::int32_t kLongestNumber = 9;
  if (text.length() > kLongestText) return false;
  std::int32_t digits = 0;
  for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    digits = u_isdigit(text.char32At(i)) ? digits + 1 : 0;
    if (digits > kLongestNumber) return false;
  }
  return true;
}

bool isGregorian(const icu::Calendar& calendar) {
  const std::string_view type = calendar.getType();
  return type == "gregorian" || type == "iso8601";
}

}  // namespace

ICUDateFormatter::ICUDateFormatter(const DateFormat& format, Shortcut shortcut)
    : fixedOffset_(fixedOffsetOf(format)) {
  const icu::Locale locale = localeOf(format);
  UErrorCode status = U_ZERO_ERROR;
  icu_ = std::make_unique<icu::SimpleDateFormat>(unicode(format.pattern), locale, status);
  auto zone = makeZone(fixedOffset_);
  if (U_FAILURE(status) || !icu_->getCalendar() || !zone) {
    icu_.reset();
    return;
  }
  icu_->adoptTimeZone(zone.release());
  icu_->setLenient(false);
  if (shortcut == Shortcut::allowed) chooseShortcut(format, locale);
}

void ICUDateFormatter::chooseShortcut(const DateFormat& format, const icu::Locale& locale) {
  if (!isGregorian(*icu_->getCalendar())) return;
  for (const auto& [pattern, style] : kShortcutPatterns) {
    if (pattern == format.pattern) readingStyle_ = style;
  }
  if (hasLatinDigits(locale)) writingStyle_ = readingStyle_;
}

std::string ICUDateFormatter::string(Date date) const {
  if (writingStyle_) {
    if (auto text = portable::writeFixedDate(date, offset(date), *writingStyle_))
      return *std::move(text);
  }
  return icuString(date);
}

std::optional<Date> ICUDateFormatter::date(std::string_view text) const {
  if (readingStyle_) {
    if (const auto date = portable::readFixedDate(text, *readingStyle_)) return date;
  }
  return icuDate(text);
}

seconds ICUDateFormatter::offset(Date date) const {
  if (fixedOffset_) return *fixedOffset_;
  const auto instant = std::chrono::floor<milliseconds>(date).time_since_epoch();
  std::int32_t raw = 0;
  std::int32_t saving = 0;
  UErrorCode status = U_ZERO_ERROR;
  const std::lock_guard lock(mutex_);
  icu_->getTimeZone().getOffset(static_cast<UDate>(instant.count()), false, raw, saving, status);
  return std::chrono::floor<seconds>(milliseconds(raw + saving));
}

std::string ICUDateFormatter::icuString(Date date) const {
  if (!icu_) return {};
  const auto instant = std::chrono::floor<milliseconds>(date).time_since_epoch();
  icu::UnicodeString text;
  {
    const std::lock_guard lock(mutex_);
    icu_->format(static_cast<UDate>(instant.count()), text);
  }
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::optional<Date> ICUDateFormatter::icuDate(std::string_view text) const {
  constexpr UDate kLimit = 9e15;  // in milliseconds; well within what a `Date` holds
  constexpr std::size_t kLongestBytes = 256;
  if (!icu_ || text.size() > kLongestBytes) return std::nullopt;
  const icu::UnicodeString unicodeText = unicode(text);
  if (!isOfDatesLength(unicodeText)) return std::nullopt;
  icu::ParsePosition position(0);
  UDate instant = 0;
  {
    const std::lock_guard lock(mutex_);
    instant = icu_->parse(unicodeText, position);
  }
  if (position.getErrorIndex() >= 0 || position.getIndex() != unicodeText.length()) return {};
  if (position.getIndex() == 0 || !(std::abs(instant) < kLimit)) return std::nullopt;
  return Date(milliseconds(static_cast<std::int64_t>(instant)));
}

}  // namespace ovinta::platform::linuxos
