#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"

namespace ovinta::platform::portable {

/// How the zone offset stands at the end of a date text.
enum class OffsetStyle {
  /// The offset is written +HHMM, also for zero.
  basic,
  /// The offset is written +HH:MM, and as "Z" for zero.
  extended,
};

// Dates of the one shape yyyy-MM-ddTHH:mm:ss.SSS and offset, in ASCII digits, by the Gregorian
// calendar. Absent says "ask a general formatter", not "no date": both leave alone whatever a
// general formatter could see differently. May be called from any thread.

/// The instant of a text of exactly this shape, whose year is 1600 to 9999, whose fields are all in
/// range, and whose offset is less than 15 hours.
std::optional<Date> readFixedDate(std::string_view text, OffsetStyle style);

/// The text of an instant, cut to milliseconds; for the same years, and for offsets of whole
/// minutes of less than 15 hours.
std::optional<std::string> writeFixedDate(Date date, std::chrono::seconds offset,
                                          OffsetStyle style);

}  // namespace ovinta::platform::portable
