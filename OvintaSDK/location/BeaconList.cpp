#include "OvintaSDK/location/BeaconList.h"

namespace ovinta {
namespace {

using namespace std::chrono_literals;

/// Whether a beacon heard at `scannedAt` is out of hearing at `now`.
bool isStale(platform::Date scannedAt, platform::Date now) { return scannedAt < now - 5s; }

}  // namespace

void BeaconList::update(const std::vector<platform::RangedBeacon>& beacons) {
  for (const platform::RangedBeacon& beacon : beacons) {
    if (!(beacon.accuracy > 0)) continue;
    add({.uuid = beacon.proximityUUID,
         .major = static_cast<std::uint16_t>(beacon.major),
         .minor = static_cast<std::uint16_t>(beacon.minor)},
        beacon.rssi, static_cast<float>(beacon.accuracy));
  }
}

void BeaconList::add(const BeaconIdentifiers& identifiers, std::int64_t rssi, float distance) {
  const platform::Date now = clock_->now();
  Beacon& beacon =
      beacons_.try_emplace(identifiers, Beacon{.identifiers = identifiers}).first->second;
  if (isStale(beacon.scannedAt, now)) {
    beacon.rssi = {};
    beacon.distance = {};
  }
  beacon.rssi.add(static_cast<float>(rssi));
  beacon.distance.add(distance);
  beacon.scannedAt = now;
}

void BeaconList::prune() {
  const platform::Date now = clock_->now();
  std::erase_if(beacons_,
                [now](const auto& entry) { return isStale(entry.second.scannedAt, now); });
}

std::vector<Beacon> BeaconList::list() const {
  std::vector<Beacon> list;
  list.reserve(beacons_.size());
  for (const auto& [identifiers, beacon] : beacons_) list.push_back(beacon);
  return list;
}

}  // namespace ovinta
