#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {

using namespace std::chrono_literals;

inline constexpr const char* kUUID = "2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6";

/// A sighting of the beacon with minor number 2.
inline platform::RangedBeacon sighting(std::int64_t rssi, double accuracy, std::int64_t major = 1) {
  return {.proximityUUID = platform::UUID::parse(kUUID).value(),
          .major = major,
          .minor = 2,
          .rssi = rssi,
          .accuracy = accuracy};
}

/// A signed-in customer, and a location updater once `start` was called. The permission is "always"
/// unless a test changes it.
class LocationFixture : public SDKFixture {
 protected:
  static constexpr std::string_view kEvents = "m/v1/events";
  static constexpr double kMetresPerDegree = 110'574;

  LocationFixture() {
    signIn();
    answer("POST", kEvents, Answer::json(200, ""));
    device->setBatteryMonitoringEnabled(true);
  }

  /// Makes the updater and lets it hear of the permission.
  void start() {
    Library::process().makeLocationUpdater();
    outcome();
  }

  /// The same, with open orders of these numbers.
  void startTracking(std::vector<std::int64_t> ids = {7}) {
    start();
    std::vector<platform::Dictionary> orders;
    for (const auto id : ids) orders.push_back(requiredOrder(id));
    fetchOrders(orders);
    happened();
  }

  /// A position some metres north of the point at latitude and longitude 0.
  platform::Location at(double metres) const {
    return {.coordinate = {.latitude = metres / kMetresPerDegree, .longitude = 0},
            .horizontalAccuracy = 5,
            .speed = 1.5,
            .timestamp = time.now()};
  }

  /// An order at the site at latitude and longitude 0.
  static platform::Dictionary orderAtZero(std::int64_t id = 7) {
    return with(requiredOrder(id), {{"site_latitude", "0.0"}, {"site_longitude", "0.0"}});
  }

  static platform::Dictionary region(platform::Dictionary more = {}) {
    return with(std::move(more), {{"uuid", kUUID}});
  }

  static platform::Dictionary orderWithRegions(std::int64_t id, platform::List regions) {
    return with(requiredOrder(id), {{"site_beacon_regions", std::move(regions)}});
  }

  std::size_t eventCount() const { return bodies("POST", kEvents).size(); }

  /// How often the log holds the line.
  std::ptrdiff_t timesLogged(std::string_view line) const {
    const auto lines = logLines();
    return std::ranges::count(lines, line);
  }
};

}  // namespace ovinta::test
