#include "platform/linux/location/beacons/BlueZDevices.h"

#include <cstdint>
#include <map>
#include <vector>

namespace ovinta::platform::linuxos {
namespace {

using ManufacturerData = std::map<std::uint16_t, dbus::Variant>;

std::optional<IBeacon> beaconIn(const ManufacturerData& data) {
  const auto found = data.find(kBeaconCompany);
  if (found == data.end()) return std::nullopt;
  const auto bytes = dbus::read<std::vector<std::uint8_t>>(found->second);
  return bytes ? readIBeacon(*bytes) : std::nullopt;
}

}  // namespace

void BlueZDevices::learn(const std::string& path, const dbus::Properties& properties) {
  const auto data = dbus::read<ManufacturerData>(properties, "ManufacturerData");
  if (!data) return;
  // Some senders are a beacon in one advertisement and something else in the next.
  if (const auto beacon = beaconIn(*data)) {
    beacons_.insert_or_assign(path, *beacon);
  } else {
    forget(path);
  }
}

std::optional<BeaconSighting> BlueZDevices::note(const std::string& path,
                                                 const dbus::Properties& properties) {
  learn(path, properties);
  const auto rssi = dbus::read<std::int16_t>(properties, "RSSI");
  const auto found = beacons_.find(path);
  if (!rssi || found == beacons_.end()) return std::nullopt;
  BeaconSighting sighting{found->second, std::nullopt};
  // Other numbers are no strength: no receiver hears less than the weakest, 127 stands for unknown,
  // and nothing real is heard at 1 mW or more.
  constexpr std::int16_t kWeakest = -127;
  if (*rssi >= kWeakest && *rssi < 0) sighting.rssi = *rssi;
  return sighting;
}

}  // namespace ovinta::platform::linuxos
