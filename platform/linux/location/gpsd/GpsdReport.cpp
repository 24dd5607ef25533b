#include "platform/linux/location/gpsd/GpsdReport.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "platform/JSON.h"
#include "platform/linux/location/PositionProvider.h"
#include "platform/portable/FixedPatternDate.h"

namespace ovinta::platform::linuxos {
namespace {

/// The accuracy of a receiver that gives no estimate: more than the error of any fix that deserves
/// the name.
constexpr double kUnestimatedAccuracyMetres = 100;

/// From this mode on the receiver has a position.
constexpr std::int64_t kTwoDimensional = 2;

/// The members of a report, of whatever class it is.
struct Members {
  std::string_view kind, release, time;
  std::int64_t mode = 0;
  double lat = NAN, lon = NAN, eph = NAN, epx = NAN, epy = NAN, speed = NAN;
};

constexpr struct {
  std::string_view key;
  std::string_view Members::*member;
} kTexts[] = {{"class", &Members::kind}, {"release", &Members::release}, {"time", &Members::time}};

constexpr struct {
  std::string_view key;
  double Members::*member;
} kNumbers[] = {{"lat", &Members::lat}, {"lon", &Members::lon}, {"eph", &Members::eph},
                {"epx", &Members::epx}, {"epy", &Members::epy}, {"speed", &Members::speed}};

Members membersOf(const JSONValue& report) {
  Members members;
  if (report.kind() != JSONValue::Kind::object) return members;
  std::string_view key;
  JSONValue value;
  for (JSONObjectCursor cursor(report); cursor.next(key, value);) {
    if (key == "mode") members.mode = value.integer().value_or(0);
    for (const auto& [name, member] : kTexts) {
      if (key == name) members.*member = value.string().value_or("");
    }
    for (const auto& [name, member] : kNumbers) {
      if (key == name) members.*member = value.number().value_or(NAN);
    }
  }
  return members;
}

double accuracyOf(const Members& fix) {
  const double accuracy = std::isfinite(fix.eph) ? fix.eph : std::hypot(fix.epx, fix.epy);
  if (!std::isfinite(accuracy)) return kUnestimatedAccuracyMetres;
  return std::max(accuracy, kBestAccuracyMetres);
}

/// The instant of a text such as 2024-01-31T12:00:00.5Z, with any number of decimals, of
/// which three count.
std::optional<Date> readTime(std::string_view text) {
  constexpr std::size_t kSeconds = 19, kMilliseconds = 23;
  if (!text.ends_with('Z') || text.size() <= kSeconds) return std::nullopt;
  std::string time(text.substr(0, text.size() - 1));
  if (time.size() == kSeconds) time += '.';
  time.resize(kMilliseconds, '0');
  return portable::readFixedDate(time + "Z", portable::OffsetStyle::extended);
}

std::optional<Location> readFix(const Members& fix) {
  const bool hasPosition =
      fix.mode >= kTwoDimensional && std::abs(fix.lat) <= 90 && std::abs(fix.lon) <= 180;
  if (!hasPosition) return std::nullopt;
  Location location{.coordinate = {fix.lat, fix.lon},
                    .horizontalAccuracy = accuracyOf(fix),
                    .speed = std::isfinite(fix.speed) ? fix.speed : -1};
  if (const auto time = readTime(fix.time)) location.timestamp = *time;
  return location;
}

}  // namespace

GpsdReport readGpsdLine(std::string_view line) {
  const auto document = JSONDocument::parse(line);
  if (!document) return {};
  const Members members = membersOf(document->root());
  if (members.kind == "TPV") return {.location = readFix(members)};
  if (members.kind == "VERSION" && !members.release.empty()) {
    return {.version = std::string(members.release)};
  }
  return {};
}

}  // namespace ovinta::platform::linuxos
