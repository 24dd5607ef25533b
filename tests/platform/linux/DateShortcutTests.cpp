#include <gtest/gtest.h>

#include <random>

#include "platform/linux/text/ICUDateFormatter.h"
#include "tests/platform/contract/DateFormatterContract.h"
#include "tests/platform/linux/ScopedDefaultZone.h"

namespace ovinta::platform::contract {
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DateFormatterContract);
}

namespace ovinta::platform::linuxos {
namespace {

using namespace contract;

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

}  // namespace
}  // namespace ovinta::platform::linuxos
