#include "replay/NMEA.h"

#include <gtest/gtest.h>

namespace ovinta::replay {
namespace {

using platform::Location;

TEST(NMEA, TellsPlaceTimeSpeedAndDilutionInEveryQuarterOfTheWorld) {
  const platform::Date time = std::chrono::sys_days{std::chrono::year{2026} / 3 / 14} +
                              std::chrono::milliseconds(54'129'875);
  const struct {
    Location location;
    const char* sentences;
  } cases[] = {
      {{{48.1173, 11.5166666}, 5, 10, time},
       "$GPGGA,150209.87,4807.03800,N,01131.00000,E,1,08,1.0,,M,,M,,*57\r\n"
       "$GPRMC,150209.87,A,4807.03800,N,01131.00000,E,19.44,,140326,,,A*78\r\n"},
      // Rounded up to the next degree, and an unknown speed.
      {{{40.999999999, -73.5}, 12, -1, time},
       "$GPGGA,150209.87,4100.00000,N,07330.00000,W,1,08,2.4,,M,,M,,*42\r\n"
       "$GPRMC,150209.87,A,4100.00000,N,07330.00000,W,,,140326,,,A*4C\r\n"},
      {{{-33.85, 151.2}, 0, 0, time},
       "$GPGGA,150209.87,3351.00000,S,15112.00000,E,1,08,0.1,,M,,M,,*4A\r\n"
       "$GPRMC,150209.87,A,3351.00000,S,15112.00000,E,0.00,,140326,,,A*5D\r\n"},
      {{{-0.5, -0.25}, 1000, 0, time},
       "$GPGGA,150209.87,0030.00000,S,00015.00000,W,1,08,99.9,,M,,M,,*65\r\n"
       "$GPRMC,150209.87,A,0030.00000,S,00015.00000,W,0.00,,140326,,,A*4A\r\n"},
      {{{40, -73}, -1, 5, time},
       "$GPGGA,150209.87,,,,,0,00,,,M,,M,,*48\r\n$GPRMC,150209.87,V,,,,,,,140326,,,N*7F\r\n"},
  };
  for (const auto& [location, sentences] : cases) EXPECT_EQ(nmea(location), sentences);
}

}  // namespace
}  // namespace ovinta::replay
