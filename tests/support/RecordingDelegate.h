#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/LocationManager.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::test {

/// Writes down what it is told: positions as metres north of the site, beacons as minor number and
/// strength, with a question mark where the distance is unknown.
class RecordingDelegate : public platform::LocationManagerDelegate {
 public:
  void didUpdateLocations(const std::vector<platform::Location>& told) override {
    using namespace platform::simulation;
    for (const auto& location : told) {
      locations.push_back(location);
      note("at " + std::to_string(std::lround(Sphere().distance(kSite, location.coordinate))));
    }
  }
  void didChangeAuthorizationStatus(platform::AuthorizationStatus status) override {
    note("status " + std::to_string(status));
  }
  void didRangeBeacons(const std::vector<platform::RangedBeacon>& beacons,
                       const platform::IdentifiedBeaconRegion& region) override {
    std::string text = region.identifier + ":";
    for (const auto& beacon : beacons) {
      text += " " + std::to_string(beacon.minor) + "@" + std::to_string(beacon.rssi) +
              (beacon.accuracy < 0 ? "?" : "");
    }
    note(text);
  }

  /// What it was told since the last call.
  std::vector<std::string> take() { return std::exchange(told_, {}); }

  std::function<void()> onTold;
  /// All positions that it was told.
  std::vector<platform::Location> locations;

 private:
  void note(const std::string& text) {
    EXPECT_EQ(std::this_thread::get_id(), maker_);
    told_.push_back(text);
    if (onTold) onTold();
  }

  /// The main thread.
  const std::thread::id maker_ = std::this_thread::get_id();
  std::vector<std::string> told_;
};

}  // namespace ovinta::test
