#include "replay/NMEA.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "platform/simulation/trip/Trip.h"

namespace ovinta::replay {
namespace {

using platform::Location;

constexpr double kMetresPerSecondPerKnot = 1852.0 / 3600;
/// The dilutions of precision that receivers tell; none tells 0.
constexpr double kLeastDilution = 0.1, kGreatestDilution = 99.9;
constexpr const char* kSatellites = "08";

template <class... Values>
std::string formatted(const char* format, Values... values) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, format, values...);
  return {text, std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof text - 1)};
}

/// "hhmmss.ss"
std::string timeOfDay(platform::Date date) {
  const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::milliseconds>(date) -
                                   std::chrono::floor<std::chrono::days>(date));
  return formatted("%02d%02d%02d.%02d", static_cast<int>(time.hours().count()),
                   static_cast<int>(time.minutes().count()),
                   static_cast<int>(time.seconds().count()),
                   static_cast<int>(time.subseconds().count() / 10));
}

/// "ddmmyy"
std::string dayOf(platform::Date date) {
  const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
  return formatted("%02u%02u%02d", static_cast<unsigned>(day.day()),
                   static_cast<unsigned>(day.month()), static_cast<int>(day.year()) % 100);
}

/// Whole degrees with so many digits, minutes behind them, and the half of the Earth. Rounded
/// before it is split, so that there are never sixty minutes.
std::string angle(double degrees, int digits, char positive, char negative) {
  constexpr long kPartsPerMinute = 100'000;
  const long parts = std::lround(std::abs(degrees) * 60 * kPartsPerMinute);
  const long minutes = parts / kPartsPerMinute;
  return formatted("%0*ld%02ld.%05ld,%c", digits, minutes / 60, minutes % 60,
                   parts % kPartsPerMinute, degrees < 0 ? negative : positive);
}

std::string place(platform::Coordinate coordinate) {
  return angle(coordinate.latitude, 2, 'N', 'S') + "," + angle(coordinate.longitude, 3, 'E', 'W');
}

std::string sentence(const std::string& body) {
  unsigned checksum = 0;
  for (const char character : body) checksum ^= static_cast<unsigned char>(character);
  return "$" + body + formatted("*%02X\r\n", checksum);
}

std::string fix(const Location& location) {
  const double dilution =
      std::clamp(location.horizontalAccuracy / platform::simulation::kMetresPerDilution,
                 kLeastDilution, kGreatestDilution);
  return place(location.coordinate) + ",1," + kSatellites + formatted(",%.1f", dilution);
}

std::string motion(const Location& location) {
  const std::string knots =
      location.speed < 0 ? "" : formatted("%.2f", location.speed / kMetresPerSecondPerKnot);
  return "A," + place(location.coordinate) + "," + knots;
}

}  // namespace

std::string nmea(const Location& location) {
  const bool isValid = location.horizontalAccuracy >= 0;
  const std::string time = timeOfDay(location.timestamp);
  return sentence("GPGGA," + time + "," + (isValid ? fix(location) : ",,,,0,00,") + ",,M,,M,,") +
         sentence("GPRMC," + time + "," + (isValid ? motion(location) : "V,,,,,") + ",," +
                  dayOf(location.timestamp) + ",,," + (isValid ? "A" : "N"));
}

}  // namespace ovinta::replay
