#include <unicode/timezone.h>

#include <charconv>
#include <list>

#include "fuzz/Target.h"
#include "platform/linux/text/ICUDateFormatter.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;
using linuxos::ICUDateFormatter;

/// The formatter that takes the fast path where it can, and the one that never does.
struct Pair {
  explicit Pair(const DateFormat& format)
      : quick(format), general(format, linuxos::Shortcut::never) {}

  ICUDateFormatter quick;
  ICUDateFormatter general;
};

constexpr const char* kServicePattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ";
constexpr const char* kPickupPattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZ";

/// First the service's; then those of pickup windows on devices here and there.
const std::list<Pair>& pairs() {
  static const auto& made = *[] {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("America/New_York"));
    auto* pairs = new std::list<Pair>;
    pairs->emplace_back(DateFormat{kServicePattern, "iso8601", 0, "en_US_POSIX"});
    for (const char* locale : {"en_US", "he_IL", "ar_EG", "th_TH", "ja_JP@calendar=japanese"}) {
      pairs->emplace_back(DateFormat{kPickupPattern, {}, {}, locale});
    }
    return pairs;
  }();
  return made;
}

void write(Date date) {
  for (const auto& [quick, general] : pairs()) {
    require(quick.string(date) == general.string(date), "both ways write the same");
  }
  const ICUDateFormatter& service = pairs().front().quick;
  // Beyond, the text names no era.
  constexpr Date kFirst = std::chrono::sys_days(std::chrono::year(1600) / 1 / 1);
  constexpr Date kPast = std::chrono::sys_days(std::chrono::year(10000) / 1 / 1);
  require(
      date < kFirst || date >= kPast ||
          service.date(service.string(date)) == std::chrono::floor<std::chrono::milliseconds>(date),
      "what is written reads back, cut to milliseconds");
}

void run(std::string_view input) {
  for (const auto& [quick, general] : pairs()) {
    const auto date = quick.date(input);
    require(date == general.date(input), "both ways read the same");
    if (date) write(*date);
  }
  // As microseconds, too.
  std::int64_t number = 0;
  std::from_chars(input.data(), input.data() + input.size(), number);
  write(Date(TimeInterval(number)));
}

const Target kTarget("dates", run);

}  // namespace
}  // namespace ovinta::fuzz
