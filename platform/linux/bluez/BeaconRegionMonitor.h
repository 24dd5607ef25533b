#pragma once

#include <string>
#include <vector>

#include "platform/Region.h"
#include "platform/linux/bluez/IBeacon.h"

namespace ovinta::platform::linux {

/// Judges in which regions the device is: inside from the first beacon of the region that is heard,
/// outside again after `kSilence` seconds without one. What it returns is what has changed.
class BeaconRegionMonitor {
 public:
  static constexpr int kSilence = 30;

  /// Replaces a region of the same identifier, of which nothing is known then; an equal one stays.
  void start(const BeaconRegion& region);
  void stop(const std::string& identifier);
  std::vector<BeaconRegion> regions() const;

  bool isEmpty() const { return states_.empty(); }
  /// Whether `passSecond` has anything to count.
  bool isInsideAny() const;

  /// The regions entered.
  std::vector<BeaconRegion> hear(const IBeacon& beacon);
  /// The regions left. To be called once a second.
  std::vector<BeaconRegion> passSecond();

 private:
  struct State {
    BeaconRegion region;
    /// Seconds that are left until the device counts as outside; zero when it does.
    int secondsLeft = 0;
  };

  std::vector<State> states_;
};

}  // namespace ovinta::platform::linux
