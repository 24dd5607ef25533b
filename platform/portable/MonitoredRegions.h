#pragma once

#include <algorithm>
#include <vector>

#include "platform/Region.h"

namespace ovinta::platform::portable {

/// The list of monitored regions that every `LocationManager` keeps. One thread at a time.
class MonitoredRegions {
 public:
  /// Replaces a region of the same identifier.
  void start(const Region& region) {
    if (std::ranges::find(regions_, region) != regions_.end()) return;
    stop(region);
    regions_.push_back(region);
  }

  void stop(const Region& region) {
    std::erase_if(regions_,
                  [&](const Region& other) { return identifier(other) == identifier(region); });
  }

  /// Oldest first.
  const std::vector<Region>& all() const { return regions_; }

 private:
  std::vector<Region> regions_;
};

}  // namespace ovinta::platform::portable
