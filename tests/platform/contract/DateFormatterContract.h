#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/DateFormatter.h"

namespace ovinta::platform::contract {

using std::chrono::microseconds;
using std::chrono::milliseconds;

inline constexpr const char* kServicePattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ";
inline constexpr const char* kPickupPattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZ";
/// The two formats of the library.
inline const DateFormat kService{kServicePattern, "iso8601", 0, "en_US_POSIX"};
inline const DateFormat kPickup{kPickupPattern, {}, {}, "en_US"};

constexpr Date date(int year, unsigned month, unsigned day, milliseconds time = {}) {
  return std::chrono::sys_days(std::chrono::year(year) / month / day) + time;
}

inline constexpr milliseconds kAfternoon = std::chrono::hours(15) + std::chrono::minutes(30);

/// What every date formatter promises. A rig is a fixture with `make(format)` and
/// `setDeviceZone(id)`, which sets the device's time zone by its name in the IANA database.
template <class Rig>
class DateFormatterContract : public Rig {};
TYPED_TEST_SUITE_P(DateFormatterContract);

TYPED_TEST_P(DateFormatterContract, WritesInTheZoneAndCalendarOfTheFormat) {
  const Date instant = date(2021, 3, 4, kAfternoon + milliseconds(7));
  const std::tuple<DateFormat, const char*, Date, const char*> cases[] = {
      {kService, "Asia/Tokyo", instant, "2021-03-04T15:30:00.007Z"},
      {kService, "GMT", instant + microseconds(999), "2021-03-04T15:30:00.007Z"},
      {kService, "GMT", Date(microseconds(-1)), "1969-12-31T23:59:59.999Z"},
      {kPickup, "America/New_York", instant, "2021-03-04T10:30:00.007-0500"},
      {kPickup, "America/New_York", date(2021, 7, 4), "2021-07-03T20:00:00.000-0400"},
      {{kPickupPattern, {}, {}, "th_TH"}, "UTC", instant, "2564-03-04T15:30:00.007+0000"},
      {{kPickupPattern, {}, {}, "ar_EG"}, "UTC", date(2021, 3, 4), "٢٠٢١-٠٣-٠٤T٠٠:٠٠:٠٠.٠٠٠+0000"},
  };
  for (const auto& [format, zone, instantToWrite, expected] : cases) {
    this->setDeviceZone(zone);
    EXPECT_EQ(this->make(format)->string(instantToWrite), expected);
  }
}

TYPED_TEST_P(DateFormatterContract, ReadsWholeMatchingTextsOnly) {
  const Date instant = date(2021, 3, 4, kAfternoon);
  const auto fraction = [](std::size_t digits) {
    return "2021-03-04T15:30:00." + std::string(digits, '1') + "-0500";
  };
  const std::pair<std::string, std::optional<Date>> cases[] = {
      {"2021-03-04T15:30:00.000Z", instant},
      {"2021-03-04T10:30:00.000-05:00", instant},
      {"2021-03-04T10:30:00.000-0500", instant},
      {"2021-03-04T15:30:00.250+00:00", instant + milliseconds(250)},
      {"2020-02-29T23:59:59.999Z", date(2020, 3, 1) - milliseconds(1)},
      {"2021-03-04T15:30:00Z", {}},
      {"2021-03-04T15:30:00.000", {}},
      {"2021-03-04T15:30:00.000Zx", {}},
      {"2021-02-29T15:30:00.000Z", {}},
      {"2021-03-04T24:00:00.000Z", {}},
      {"2021-03-04T15:30:00.000+25:00", {}},
      {"999999-03-04T15:30:00.000Z", {}},
      {"999999999-03-04T15:30:00.000Z", {}},
      {"", {}},
      // A fraction may be finer than a date is; longer than nine digits it is none.
      {"2021-03-04T15:30:00.250999999Z", instant + milliseconds(250)},
      {"2021-03-04T15:30:00.2509999999Z", {}},
      {fraction(33), {}},
      {fraction(35), {}},
      {fraction(60), {}},
      {fraction(100'000), {}},
      {"2021-03-04T15:30:00.000GMT+00:00" + std::string(1000, ' '), {}},
      {"0000000002021-03-04T15:30:00.000Z", {}},
  };
  const auto service = this->make(kService);
  const auto pickup = this->make(kPickup);
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(service->date(text), expected) << text;
    EXPECT_EQ(pickup->date(text), expected) << text;
  }
}

TYPED_TEST_P(DateFormatterContract, ReadsTheDeviceSettingsWhenMade) {
  this->setDeviceZone("Asia/Kathmandu");
  const auto made = this->make(kPickup);
  this->setDeviceZone("America/New_York");
  EXPECT_EQ(made->string(date(2021, 3, 4)), "2021-03-04T05:45:00.000+0545");
}

TYPED_TEST_P(DateFormatterContract, ServesThreadsAtTheSameTime) {
  const auto formatter = this->make(kPickup);
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 500; ++round) {
        // Some implementations serve the usual dates and fractions in another way than these.
        const Date instant = date(round % 2 == 0 ? 1500 + i : 2000 + i, 1, 1, milliseconds(round));
        EXPECT_EQ(formatter->date(formatter->string(instant)), instant);
        EXPECT_EQ(formatter->date("2021-03-04T15:30:00.0Z"), date(2021, 3, 4, kAfternoon));
      }
    });
  }
}

REGISTER_TYPED_TEST_SUITE_P(DateFormatterContract, WritesInTheZoneAndCalendarOfTheFormat,
                            ReadsWholeMatchingTextsOnly, ReadsTheDeviceSettingsWhenMade,
                            ServesThreadsAtTheSameTime);

}  // namespace ovinta::platform::contract
