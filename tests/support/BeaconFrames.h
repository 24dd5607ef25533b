#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

#include "platform/linux/location/beacons/IBeacon.h"

namespace ovinta::test {

using Bytes = std::vector<std::uint8_t>;

inline constexpr platform::UUID kBeaconUUID{
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};

/// What a beacon sends in the name of its company.
inline Bytes beaconFrame(const platform::linuxos::IBeacon& beacon) {
  Bytes bytes{2, 21};
  std::ranges::copy(beacon.proximityUUID.bytes, std::back_inserter(bytes));
  for (const int number : {beacon.major >> 8, beacon.major & 255, beacon.minor >> 8,
                           beacon.minor & 255, beacon.measuredPower & 255}) {
    bytes.push_back(static_cast<std::uint8_t>(number));
  }
  return bytes;
}

}  // namespace ovinta::test
