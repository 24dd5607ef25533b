#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "OvintaSDK/location/Beacon.h"
#include "platform/Clock.h"
#include "platform/LocationManager.h"

namespace ovinta {

/// The beacons heard recently, each with smoothed measures. Main thread only.
class BeaconList {
 public:
  explicit BeaconList(std::shared_ptr<platform::Clock> clock) : clock_(std::move(clock)) {}

  /// Takes in what one ranging callback delivered; beacons of unknown distance are skipped.
  void update(const std::vector<platform::RangedBeacon>& beacons);

  /// Records one sighting, now. A beacon not heard for more than 5 seconds starts afresh.
  void add(const BeaconIdentifiers& identifiers, std::int64_t rssi, float distance);

  /// Drops the beacons not heard for more than 5 seconds.
  void prune();

  /// All beacons, in no meaningful order.
  std::vector<Beacon> list() const;

  bool empty() const { return beacons_.empty(); }

 private:
  const std::shared_ptr<platform::Clock> clock_;
  std::map<BeaconIdentifiers, Beacon> beacons_;
};

}  // namespace ovinta
