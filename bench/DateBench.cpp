#include <array>
#include <chrono>
#include <cstdlib>
#include <string>

#include "bench/Row.h"
#include "platform/linux/text/ICUDateFormatter.h"

namespace ovinta::bench {
namespace {

using namespace platform;
using linuxos::ICUDateFormatter;

constexpr Date kDate{std::chrono::milliseconds(1'614'871'800'123)};

const ICUDateFormatter& formatter() {
  static const auto* const service =
      new ICUDateFormatter({"yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ", "iso8601", 0, "en_US_POSIX"});
  return *service;
}

/// The instant of a text that is known to be one: nothing is checked.
Date readUnchecked(std::string_view text) {
  const auto digits = [text](std::size_t place, int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) value = value * 10 + (text[place + i] - '0');
    return value;
  };
  using namespace std::chrono;
  const year_month_day day{year(digits(0, 4)), month(digits(5, 2)), std::chrono::day(digits(8, 2))};
  return sys_days(day) + hours(digits(11, 2)) + minutes(digits(14, 2)) + seconds(digits(17, 2)) +
         milliseconds(digits(20, 3));
}

void readAlone(benchmark::State& state) {
  const std::string text = formatter().string(kDate);
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.data());
    benchmark::DoNotOptimize(readUnchecked(text));
  }
}

void readDate(benchmark::State& state) {
  const std::string text = formatter().string(kDate);
  if (formatter().date(text) != kDate || readUnchecked(text) != kDate) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(formatter().date(text));
}

/// The text of an instant that is known to be in UTC and in range.
std::string writeUnchecked(Date date) {
  using namespace std::chrono;
  const auto midnight = floor<days>(date);
  const year_month_day day(midnight);
  const hh_mm_ss time(floor<milliseconds>(date) - midnight);
  std::string text = "0000-00-00T00:00:00.000Z";
  const auto put = [&text](std::size_t place, std::size_t count, unsigned value) {
    for (; count > 0; value /= 10) text[place + --count] = static_cast<char>('0' + value % 10);
  };
  put(0, 4, static_cast<unsigned>(static_cast<int>(day.year())));
  put(5, 2, static_cast<unsigned>(day.month()));
  put(8, 2, static_cast<unsigned>(day.day()));
  put(11, 2, static_cast<unsigned>(time.hours().count()));
  put(14, 2, static_cast<unsigned>(time.minutes().count()));
  put(17, 2, static_cast<unsigned>(time.seconds().count()));
  put(20, 3, static_cast<unsigned>(time.subseconds().count()));
  return text;
}

void writeAlone(benchmark::State& state) {
  Date date = kDate;
  for (auto _ : state) {
    benchmark::DoNotOptimize(date);
    benchmark::DoNotOptimize(writeUnchecked(date));
  }
}

void writeDate(benchmark::State& state) {
  if (formatter().string(kDate) != writeUnchecked(kDate)) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(formatter().string(kDate));
}

const TimeRow kRead{"date/read", &readAlone, &readDate, 2.5, Clock::processor};
const TimeRow kWrite{"date/write", &writeAlone, &writeDate, 2, Clock::processor};

}  // namespace
}  // namespace ovinta::bench
