#include "platform/linux/location/PositionProperties.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {
namespace {

/// The time of a position, which is written as seconds and microseconds since 1970. One that no
/// clock could show is read as the distant past.
Date readTime(const dbus::Properties& properties) {
  using Time = std::tuple<std::uint64_t, std::uint64_t>;
  constexpr std::uint64_t kLastSecond = 1'000'000'000'000;
  const auto time = dbus::read<Time>(properties, "Timestamp");
  if (!time || std::get<0>(*time) > kLastSecond || std::get<1>(*time) >= 1'000'000) {
    return kDistantPast;
  }
  return Date(std::chrono::seconds(std::get<0>(*time)) +
              std::chrono::microseconds(std::get<1>(*time)));
}

}  // namespace

std::optional<Location> readPosition(const dbus::Properties& properties) {
  const auto number = [&](const char* name) {
    return dbus::read<double>(properties, name).value_or(NAN);
  };
  const Coordinate coordinate{number("Latitude"), number("Longitude")};
  const double accuracy = number("Accuracy");
  const bool makesSense = std::abs(coordinate.latitude) <= 90 &&
                          std::abs(coordinate.longitude) <= 180 && accuracy >= 0 &&
                          std::isfinite(accuracy);
  if (!makesSense) return std::nullopt;
  const double speed = number("Speed");
  return Location{.coordinate = coordinate,
                  .horizontalAccuracy = std::max(accuracy, kBestAccuracyMetres),
                  .speed = std::isfinite(speed) ? speed : -1,
                  .timestamp = readTime(properties)};
}

std::uint32_t distanceThreshold(double metres) {
  if (!(metres > 0)) return 0;
  return static_cast<std::uint32_t>(
      std::min<double>(metres, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace ovinta::platform::linuxos
