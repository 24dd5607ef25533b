#pragma once

#include "OvintaSDK/location/Beacon.h"
#include "OvintaSDK/location/BeaconRegion.h"
#include "OvintaSDK/model/wire/RecordCoding.h"

namespace ovinta::wire {

template <>
struct WireTable<BeaconRegion> {
  static constexpr auto kFields =
      table(field("uuid", &BeaconRegion::uuid), field("major", &BeaconRegion::major),
            field("minor", &BeaconRegion::minor));
};

template <>
struct WireTable<BeaconIdentifiers> {
  static constexpr auto kFields =
      table(field("uuid", &BeaconIdentifiers::uuid), field("major", &BeaconIdentifiers::major),
            field("minor", &BeaconIdentifiers::minor));
};

/// A beacon is written, never read.
template <>
struct WireTable<Beacon> {
  static constexpr auto kFields =
      table(field("rssi", &Beacon::rssi, &Averager::value),
            field("distance", &Beacon::distance, &Averager::value),
            flat(&Beacon::identifiers, WireTable<BeaconIdentifiers>::kFields));
};

}  // namespace ovinta::wire
