#include "cli/track/LiveState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/client/TerminalBlock.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/time/VirtualTime.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/RecordingDelegate.h"

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
                       .rangedRegions = {platform::IdentifiedBeaconRegion{uuid, {}, {}, "site"}},
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
  EXPECT_EQ(permissionText(true, 0), "no answer yet");
  EXPECT_EQ(permissionText(true, 5), "number 5");
}

TEST(ObservedLocationServices, recordWhatPasses) {
  platform::simulation::VirtualTime time(kNow);
  const auto inner = std::make_shared<platform::simulation::SimulatedLocation>(
      time.mainQueue(), std::make_shared<platform::simulation::Sphere>());
  ObservedLocationServices services(inner, time.clock());
  test::RecordingDelegate library;
  const auto manager = services.makeLocationManager();
  manager->setDelegate(&library);
  for (const double filter : {3, 400, 400}) manager->setDistanceFilter(filter);
  manager->startUpdatingLocation();
  manager->startRangingBeacons({.proximityUUID = {}, .major = {}, .minor = {}, .identifier = "a"});
  inner->deliver({.coordinate = {1, 2}});
  for (const int rssi : {-60, -70, -59}) {
    inner->setBeaconsInRange({{{}, 0, 0, rssi, 2}, {{}, 1, 0, -50, 71.0 + rssi}});
    time.advance(1s);
  }

  const ObservedLocation& observed = services.observed();
  EXPECT_EQ(accuracyText(observed), "best for navigation, 400 m");
  EXPECT_EQ(observed.distanceFilterChanges, 2U);
  EXPECT_EQ(observed.rangedRegions, inner->rangedRegions());
  EXPECT_EQ(observed.location->coordinate, (platform::Coordinate{1, 2}));
  EXPECT_THAT(library.take(),
              testing::ElementsAre("status 3", testing::StartsWith("at "), "a: 0@-60 0@-50",
                                   "a: 0@-70 0@-50", "a: 0@-59 0@-50"));
  // Smoothed as the library does it.
  ASSERT_EQ(observed.beacons.size(), 2U);
  EXPECT_EQ(observed.beacons[0].rssi.value, -63);
  EXPECT_EQ(observed.beacons[1].distance.value, 8);
  inner->setAuthorizationStatus(2);
  time.advance(6s);
  EXPECT_THAT(services.observed().beacons, testing::IsEmpty()) << "ranging has ended";
}

TEST(TerminalBlock, fitsTheTerminal) {
  const std::vector<std::string> lines{"Str店ße 1", "\x1b[2J", "third"};
  const struct {
    std::size_t rows, columns;
    std::vector<std::string> fitting;
  } cases[] = {{4, 80, {"Str店ße 1", "\\x1b[2J", "third"}},
               {3, 6, {"Str店", "\\x1b["}},
               {1, 6, {}},
               {4, 1, {"", "", ""}}};
  for (const auto& [rows, columns, fitting] : cases) {
    EXPECT_EQ(fitted(lines, rows, columns), fitting) << rows << " x " << columns;
  }
}

}  // namespace
}  // namespace ovinta::cli
