#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <random>
#include <thread>

#include "platform/linux/text/ICUDateFormatter.h"
#include "platform/linux/text/TextServices.h"

namespace ovinta::platform::linuxos {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::sys_days;
using std::chrono::year;

constexpr const char* kServicePattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ";
constexpr const char* kPickupPattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZ";
const DateFormat kService{kServicePattern, "iso8601", 0, "en_US_POSIX"};
const DateFormat kPickup{kPickupPattern, {}, {}, "en_US"};

/// Makes a zone the process's default one for as long as it lives.
class ScopedDefaultZone {
 public:
  explicit ScopedDefaultZone(const char* id) : previous_(icu::TimeZone::createDefault()) {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(icu::UnicodeString(id)));
  }
  ~ScopedDefaultZone() { icu::TimeZone::adoptDefault(previous_); }

 private:
  icu::TimeZone* previous_;
};

std::unique_ptr<DateFormatter> make(const DateFormat& format) {
  return makeDateFormatterFactory()->makeDateFormatter(format);
}

constexpr Date date(int y, unsigned month, unsigned day, milliseconds time = {}) {
  return sys_days(year(y) / month / day) + time;
}

constexpr milliseconds kAfternoon = std::chrono::hours(15) + std::chrono::minutes(30);

TEST(DateFormatterTest, WritesInTheZoneAndCalendarOfTheFormat) {
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
    const ScopedDefaultZone scoped(zone);
    EXPECT_EQ(make(format)->string(instantToWrite), expected);
  }
}

TEST(DateFormatterTest, ReadsWholeMatchingTextsOnly) {
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
  const auto service = make(kService);
  const auto pickup = make(kPickup);
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(service->date(text), expected) << text;
    EXPECT_EQ(pickup->date(text), expected) << text;
  }
}

TEST(DateFormatterTest, ReadsTheDeviceSettingsWhenMade) {
  std::unique_ptr<DateFormatter> made;
  {
    const ScopedDefaultZone zone("Asia/Kathmandu");
    made = make(kPickup);
  }
  const ScopedDefaultZone zone("America/New_York");
  EXPECT_EQ(made->string(date(2021, 3, 4)), "2021-03-04T05:45:00.000+0545");
}

struct ShortcutCase {
  DateFormat format;
  const char* zone;
};

class DateShortcutTest : public testing::TestWithParam<ShortcutCase> {
 protected:
  std::int64_t below(std::int64_t limit) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(limit));
  }

  /// Half of them in living memory, the others far off on both sides of what the shortcut serves.
  Date randomDate() {
    const int first = below(2) == 0 ? 1960 : 1500;
    const int last = first == 1960 ? 2060 : 10100;
    const microseconds span = date(last, 1, 1) - date(first, 1, 1);
    return date(first, 1, 1) + microseconds(below(span.count()));
  }

  /// The text with one to three characters replaced, removed or added.
  std::string damaged(std::string text) {
    constexpr std::string_view kCharacters = "0123456789+-:.ZTz ";
    for (auto edits = below(3); edits >= 0 && !text.empty(); --edits) {
      const auto position = static_cast<std::size_t>(below(std::ssize(text)));
      const char c = kCharacters[static_cast<std::size_t>(below(std::ssize(kCharacters)))];
      const auto kind = below(4);
      if (kind < 2) text[position] = c;
      if (kind == 2) text.erase(position, 1);
      if (kind == 3) text.insert(position, 1, c);
    }
    return text;
  }

  std::mt19937_64 random_{7};
};

TEST_P(DateShortcutTest, EqualsICU) {
  const ScopedDefaultZone zone(GetParam().zone);
  const ICUDateFormatter quick(GetParam().format);
  const ICUDateFormatter reference(GetParam().format, Shortcut::never);
  const std::string_view offsets[] = {"Z",      "+00:00", "-00:00", "+0000",     "-0500", "-05:00",
                                      "+14:59", "-1459",  "+15:00", "+05:30:15", "+5",    "GMT"};
  const auto expectSameReading = [&](const std::string& text) {
    ASSERT_EQ(quick.date(text), reference.date(text)) << text;
  };
  for (int round = 0; round < 400; ++round) {
    const Date instant = round == 0 ? Date::min() : round == 1 ? Date::max() : randomDate();
    const std::string text = reference.string(instant);
    ASSERT_EQ(quick.string(instant), text);
    const std::string local = text.substr(0, text.find_last_of("Z+-"));
    expectSameReading(text);
    for (const auto offset : offsets) expectSameReading(local + std::string(offset));
    for (int i = 0; i < 8; ++i) expectSameReading(damaged(text));
    for (const char* fraction : {"", ".1", ".12", ".1234", ".99999"}) {
      expectSameReading(local.substr(0, local.find_last_of('.')) + fraction + "+0000");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, DateShortcutTest,
    testing::Values(ShortcutCase{kService, "GMT"},
                    ShortcutCase{{kServicePattern, "iso8601", 20700, "en_US_POSIX"}, "GMT"},
                    ShortcutCase{kPickup, "America/New_York"},
                    ShortcutCase{{kPickupPattern, {}, {}, "fr_FR"}, "Australia/Lord_Howe"},
                    ShortcutCase{{kPickupPattern, {}, {}, "he_IL"}, "Africa/Monrovia"},
                    ShortcutCase{{kPickupPattern, {}, {}, "ja_JP"}, "Asia/Kathmandu"},
                    ShortcutCase{{kPickupPattern, {}, {}, "ar_EG"}, "Pacific/Apia"},
                    ShortcutCase{{kPickupPattern, {}, {}, "mr_IN"}, "Asia/Kolkata"},
                    ShortcutCase{{kPickupPattern, {}, {}, "th_TH"}, "Asia/Bangkok"},
                    ShortcutCase{{kPickupPattern, "japanese", {}, "ja_JP"}, "Asia/Tokyo"}));

TEST(DateFormatterTest, ServesThreadsAtTheSameTime) {
  const auto formatter = make(kPickup);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 500; ++round) {
        // 1500 and the short fraction go through ICU, the others around it.
        const Date instant = date(round % 2 == 0 ? 1500 + i : 2000 + i, 1, 1, milliseconds(round));
        EXPECT_EQ(formatter->date(formatter->string(instant)), instant);
        EXPECT_EQ(formatter->date("2021-03-04T15:30:00.0Z"), date(2021, 3, 4, kAfternoon));
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace ovinta::platform::linuxos
