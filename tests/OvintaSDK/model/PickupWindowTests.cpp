#include "OvintaSDK/model/PickupWindow.h"

#include <gmock/gmock.h>

#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;
using platform::Date;
using ::testing::StartsWith;

using PickupWindowTest = SDKFixture;

TEST_F(PickupWindowTest, TravelsAsTwoInstantsOfTheDevicesZone) {
  const std::string start = "2021-03-04T15:30:00.000-0500/";
  const std::pair<PickupWindow, std::string> cases[] = {
      {{kStart, kStart + 30min}, start + "2021-03-04T16:00:00.000-0500"},
      {PickupWindow(kStart), start + "2021-03-04T15:30:00.000-0500"},
      // The end may come first.
      {{kStart, kStart - 24h}, start + "2021-03-03T15:30:00.000-0500"},
      {{kStart + 1ms, kStart + 999ms},
       "2021-03-04T15:30:00.001-0500/2021-03-04T15:30:00.999-0500"}};
  for (const auto& [window, text] : cases) {
    EXPECT_EQ(encoded(window), '"' + text + '"');
    EXPECT_EQ(decoded<PickupWindow>('"' + text + '"'), window);
  }
  for (const char* text : {R"("2021-03-04T15:30:00.000-0500\/2021-03-04T16:00:00.000-0500")",
                           R"("2021-03-04T15:30:00.000-0500//2021-03-04T16:00:00.000-0500")",
                           R"("/2021-03-04T15:30:00.000-0500/2021-03-04T16:00:00.000-0500/")",
                           R"("2021-03-04T20:30:00.000+0000/2021-03-04T22:00:00.000+0100")"}) {
    EXPECT_EQ(decoded<PickupWindow>(text), PickupWindow(kStart, kStart + 30min)) << text;
  }
  // Of a finer instant only the milliseconds travel.
  EXPECT_EQ(decoded<PickupWindow>(encoded(PickupWindow(kStart + 1999us))),
            PickupWindow(kStart + 1ms));
}

TEST_F(PickupWindowTest, RefusesWhatIsNoWindow) {
  const std::string instant = "2021-03-04T15:30:00.000-0500";
  for (const std::string& text :
       {std::string(), std::string("/"), std::string("//"), instant, instant + "/",
        instant + "/" + instant + "/" + instant, instant + "/later", "later/" + instant,
        instant + "-" + instant, instant + " / " + instant, instant + "/2021-03-04T15:30:00-0500",
        instant + "/2021-13-04T15:30:00.000-0500"}) {
    EXPECT_EQ(decodingFailure<PickupWindow>('"' + text + '"'),
              "data corrupted: Invalid date range format")
        << text;
  }
  EXPECT_THAT(decodingFailure<PickupWindow>("5"), StartsWith("type mismatch"));
  EXPECT_THAT(decodingFailure<PickupWindow>("null"), StartsWith("value not found"));
}

TEST_F(PickupWindowTest, TheServicesInstantsAreUTC) {
  EXPECT_EQ(encoded(kStart), R"("2021-03-04T20:30:00.000Z")");
  for (const char* text : {R"("2021-03-04T20:30:00.000Z")", R"("2021-03-04T15:30:00.000-05:00")",
                           R"("2021-03-04T20:30:00.000+00:00")"}) {
    EXPECT_EQ(decoded<Date>(text), kStart) << text;
  }
  EXPECT_THAT(decodingFailure<Date>(R"("2021-03-04T20:30:00Z")"), StartsWith("data corrupted"));
  EXPECT_THAT(decodingFailure<Date>(R"("tomorrow")"), StartsWith("data corrupted"));
  // One formatter for all, and whatever the device is set to.
  ASSERT_EQ(dateFormatters->formats.size(), 1U);
  EXPECT_EQ(dateFormatters->formats[0].calendar, "iso8601");
  EXPECT_EQ(dateFormatters->formats[0].locale, "en_US_POSIX");
}

}  // namespace
}  // namespace ovinta::test
