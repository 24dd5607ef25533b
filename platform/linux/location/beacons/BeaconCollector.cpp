#include "platform/linux/location/beacons/BeaconCollector.h"

#include <cmath>
#include <utility>

#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::linuxos {

void BeaconCollector::add(const BeaconSighting& sighting) {
  const IBeacon& beacon = sighting.beacon;
  Sum& sum = sums_[{beacon.proximityUUID, beacon.major, beacon.minor}];
  sum.measuredPower = beacon.measuredPower;
  if (!sighting.rssi) return;
  sum.strengths += *sighting.rssi;
  ++sum.count;
}

std::vector<RangedBeacon> BeaconCollector::take(double pathLossExponent) {
  std::vector<RangedBeacon> beacons;
  for (const auto& [key, sum] : std::exchange(sums_, {})) {
    const auto& [uuid, major, minor] = key;
    RangedBeacon& beacon = beacons.emplace_back(RangedBeacon{uuid, major, minor});
    if (sum.count == 0) continue;
    const double mean = static_cast<double>(sum.strengths) / static_cast<double>(sum.count);
    beacon.rssi = std::llround(mean);
    if (sum.measuredPower >= 0) continue;
    beacon.accuracy = portable::pathLossDistance(mean, sum.measuredPower, pathLossExponent);
  }
  return beacons;
}

}  // namespace ovinta::platform::linuxos
