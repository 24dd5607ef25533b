#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Date.h"

namespace ovinta::platform {

/// How a date formatter is set up; what is absent is the device's current setting. A plain value.
struct DateFormat {
  /// A date pattern of Unicode Technical Standard 35, e.g. "yyyy-MM-dd'T'HH:mm:ss.SSSZ".
  std::string pattern;
  /// A calendar identifier of the Unicode locale database, e.g. "iso8601".
  std::optional<std::string> calendar = {};
  /// The time zone, in seconds east of Greenwich.
  std::optional<int> secondsFromGMT = {};
  /// A locale identifier, e.g. "en_US_POSIX".
  std::optional<std::string> locale = {};
};

/// Writes instants as text and reads them back. May be used from any thread.
class DateFormatter {
 public:
  virtual ~DateFormatter() = default;

  /// The text of the instant; parts finer than the pattern shows are cut off.
  virtual std::string string(Date date) const = 0;

  /// The instant that the whole text stands for; absent when it does not match the pattern.
  virtual std::optional<Date> date(std::string_view text) const = 0;
};

/// Makes date formatters. May be used from any thread.
class DateFormatterFactory {
 public:
  virtual ~DateFormatterFactory() = default;

  /// A formatter with the given format, never null. The device's settings are read now, not at each
  /// use.
  virtual std::unique_ptr<DateFormatter> makeDateFormatter(const DateFormat& format) = 0;
};

}  // namespace ovinta::platform
