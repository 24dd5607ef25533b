#pragma once

#include <unicode/smpdtfmt.h>

#include <memory>
#include <mutex>

#include "platform/DateFormatter.h"
#include "platform/portable/FixedPatternDate.h"

namespace ovinta::platform::linuxos {

/// Whether dates of the two common patterns may go around ICU, which takes hundreds of times as
/// long for them.
enum class Shortcut { allowed, never };

/// A date formatter by ICU: strict, and only whole texts match. A format that ICU cannot serve
/// gives a formatter that writes the empty text and reads nothing.
class ICUDateFormatter : public DateFormatter {
 public:
  explicit ICUDateFormatter(const DateFormat& format, Shortcut shortcut = Shortcut::allowed);

  std::string string(Date date) const override;
  std::optional<Date> date(std::string_view text) const override;

 private:
  /// Settles which of the two directions may go around ICU.
  void chooseShortcut(const DateFormat& format, const icu::Locale& locale);
  std::chrono::seconds offset(Date date) const;
  std::string icuString(Date date) const;
  std::optional<Date> icuDate(std::string_view text) const;

  std::optional<portable::OffsetStyle> readingStyle_;
  std::optional<portable::OffsetStyle> writingStyle_;
  std::optional<std::chrono::seconds> fixedOffset_;
  /// ICU's formatters and zones are for one thread at a time.
  mutable std::mutex mutex_;
  std::unique_ptr<icu::SimpleDateFormat> icu_;
};

}  // namespace ovinta::platform::linuxos
