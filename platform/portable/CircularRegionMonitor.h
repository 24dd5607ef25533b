#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/portable/RegionSide.h"

namespace ovinta::platform::portable {

/// Judges from the positions of the device which circles it has come into and left. One thread at a
/// time.
class CircularRegionMonitor {
 public:
  struct Crossing {
    CircularRegion region;
    RegionEvent event;
  };

  /// Replaces a region of the same identifier. Where the device is when it starts is no crossing.
  void start(const CircularRegion& region) {
    stop(region.identifier);
    watched_.push_back({region});
  }

  void stop(const std::string& identifier) {
    std::erase_if(watched_,
                  [&](const Watched& other) { return other.region.identifier == identifier; });
  }

  bool isEmpty() const { return watched_.empty(); }

  /// The borders crossed since the fix before, as far as the regions want to be told.
  std::vector<Crossing> judge(const Location& fix, const Geodesy& geodesy) {
    std::vector<Crossing> crossings;
    for (auto& [region, side] : watched_) {
      const RegionSide now = sideOf(region, fix, geodesy);
      if (now == RegionSide::unknown) continue;
      const auto event = eventBetween(std::exchange(side, now), now, region);
      if (event) crossings.push_back({region, *event});
    }
    return crossings;
  }

 private:
  struct Watched {
    CircularRegion region;
    /// The last side of the border on which the device certainly was.
    RegionSide side = RegionSide::unknown;
  };

  std::vector<Watched> watched_;
};

}  // namespace ovinta::platform::portable
