#include "cli/track/LiveState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/client/TerminalBlock.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

const platform::Date kNow = platform::Date() + 100s;

LiveState followed() {
  const platform::UUID uuid = *platform::UUID::parse("0F000000-0000-0000-0000-00000000000A");
  return {.now = kNow,
          .isEnabled = true,
          .permission = 4,
          .location = {.isUpdating = true,
                       .isMonitoringSignificantChanges = true,
                       .desiredAccuracy = platform::LocationAccuracy::best,
                       .distanceFilter = 200,
                       .rangedRegions = {platform::BeaconRegion{uuid, {}, {}, "site"}},
                       .location = platform::Location{.coordinate = {40.7411, -73.9897},
                                                      .horizontalAccuracy = 5,
                                                      .timestamp = kNow - 3500ms},
                       .beacons = {{.identifiers = {.uuid = uuid, .major = 1, .minor = 2},
                                    .rssi = {.value = -61.25F},
                                    .distance = {.value = 1.5F}}}},
          .distance = 1234.4,
          .battery = platform::BatteryState::charging,
          .sent = {{"POST m/v1/events location_update", 12}},
          .lastSent = Exchange{"POST", "m/v1/events", "location_update", "", 200, ""}};
}

TEST(LiveState, isShownByLines) {
  LiveState silent = followed();
  silent.location.beacons.clear();
  const struct {
    LiveState state;
    std::vector<std::string> lines;
  } cases[] = {
      {LiveState{},
       {"", "Permission  no answer yet, nor a location service", "Position    none yet",
        "Distance    unknown", "Accuracy    positions are not asked for",
        "Beacons     not listened for", "Battery     unknown", "Sent        nothing yet"}},
      {followed(),
       {"", "Permission  granted while in use",
        "Position    40.74110, -73.98970 within 5 m, 3 s ago",
        "Distance    1234 m to the nearest site",
        "Accuracy    best, 200 m, and significant changes",
        "Beacons     -61.2 dBm, 1.5 m: 1/2 of 0F000000-0000-0000-0000-00000000000A",
        "Battery     charging", "Sent        12 x POST m/v1/events location_update",
        "            last: POST m/v1/events location_update -> 200"}},
  };
  for (const auto& [state, lines] : cases) EXPECT_EQ(liveLines(state), lines);
  EXPECT_THAT(liveLines(silent), testing::Contains("Beacons     none heard of 1 region(s)"));
}

TEST(TerminalBlock, fitsTheTerminal) {
  const std::vector<std::string> lines{"Straße 1", "\x1b[2J", "third"};
  const struct {
    std::size_t rows, columns;
    std::vector<std::string> fitting;
  } cases[] = {{4, 80, {"Straße 1", "\\x1b[2J", "third"}},
               {3, 6, {"Straß", "\\x1b["}},
               {1, 6, {}},
               {4, 1, {"", "", ""}}};
  for (const auto& [rows, columns, fitting] : cases) {
    EXPECT_EQ(fitted(lines, rows, columns), fitting) << rows << " x " << columns;
  }
}

}  // namespace
}  // namespace ovinta::cli
