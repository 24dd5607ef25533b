#include "platform/linux/location/beacons/IBeacon.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ovinta::platform::linuxos {
namespace {

/// What a beacon's data begin with: the kind of message, and how many bytes follow.
constexpr std::array<std::uint8_t, 2> kPrefix{0x02, 21};
constexpr std::size_t kSize = kPrefix.size() + kPrefix[1];

std::uint16_t bigEndian(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

}  // namespace

std::optional<IBeacon> readIBeacon(std::span<const std::uint8_t> data) {
  if (data.size() < kSize || !std::ranges::equal(data.first(kPrefix.size()), kPrefix)) {
    return std::nullopt;
  }
  IBeacon beacon;
  const auto content = data.subspan(kPrefix.size());
  const std::size_t numbers = beacon.proximityUUID.bytes.size();
  std::ranges::copy(content.first(numbers), beacon.proximityUUID.bytes.begin());
  beacon.major = bigEndian(content.subspan(numbers));
  beacon.minor = bigEndian(content.subspan(numbers + 2));
  beacon.measuredPower = static_cast<std::int8_t>(content[numbers + 4]);
  return beacon;
}

}  // namespace ovinta::platform::linuxos
