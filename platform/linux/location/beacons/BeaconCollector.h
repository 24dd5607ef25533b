#pragma once

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/linux/location/beacons/IBeacon.h"

namespace ovinta::platform::linuxos {

/// Gathers what is heard in one interval of ranging.
class BeaconCollector {
 public:
  void add(const BeaconSighting& sighting);

  /// The beacons heard since the last time, each once: with the mean of its strengths, rounded, and
  /// the distance that this mean speaks of under the exponent of the path-loss model. Where the
  /// strength is unknown it is 0, and the distance is negative; so is that to a beacon that does
  /// not say how strong it is.
  std::vector<RangedBeacon> take(double pathLossExponent);

 private:
  struct Sum {
    std::int8_t measuredPower = 0;
    std::int64_t strengths = 0;
    std::int64_t count = 0;
  };

  /// The sightings by UUID, major and minor, which tell beacons apart; their Bluetooth addresses
  /// change.
  std::map<std::tuple<UUID, std::uint16_t, std::uint16_t>, Sum> sums_;
};

}  // namespace ovinta::platform::linuxos
