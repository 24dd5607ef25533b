#include <cmath>

#include "OvintaSDK/location/BeaconList.h"
#include "OvintaSDK/model/wire/BeaconWire.h"
#include "fuzz/Platform.h"
#include "fuzz/Target.h"
#include "platform/linux/location/beacons/BeaconCollector.h"
#include "platform/linux/location/beacons/BlueZDevices.h"
#include "tests/support/BeaconFrames.h"
#include "tests/support/WireText.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

void readFrame(std::string_view input) {
  const std::vector<std::uint8_t> bytes(input.begin(), input.end());
  const auto beacon = linuxos::readIBeacon(bytes);
  if (!beacon) return;
  const auto frame = test::beaconFrame(*beacon);
  require(input.starts_with(std::string(frame.begin(), frame.end())), "a beacon is what it sent");
}

/// The properties that a text in GLib's own form stands for; null for none.
linuxos::dbus::Variant propertiesIn(std::string_view text) {
  // GLib takes no other text, as no bus passes one on.
  if (!g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr)) return {};
  GError* error = nullptr;
  GVariant* const value = g_variant_parse(G_VARIANT_TYPE_VARDICT, text.data(),
                                          text.data() + text.size(), nullptr, &error);
  g_clear_error(&error);
  return linuxos::dbus::Variant::taking(value);
}

/// Each line: what is told of a device, by the letter that it begins with.
void run(std::string_view input) {
  readFrame(input);
  Platform::shared();
  linuxos::BlueZDevices devices;
  linuxos::BeaconCollector collector;
  while (!input.empty()) {
    const std::string_view line = takeLine(input);
    const auto text = line.substr(std::min<std::size_t>(1, line.size()));
    const auto properties = linuxos::dbus::read<linuxos::dbus::Properties>(propertiesIn(text));
    if (!properties) continue;
    const auto sighting = devices.note(std::string(line.substr(0, 1)), *properties);
    if (sighting) collector.add(*sighting);
    require(!sighting || !sighting->rssi || *sighting->rssi < 0, "a strength is below zero");
  }
  BeaconList heard(Platform::shared().time.clock());
  const auto ranged = collector.take(2);
  for (const auto& beacon : ranged) {
    require(beacon.rssi <= 0 && std::isfinite(beacon.accuracy), "a distance is finite");
  }
  heard.update(ranged);
  for (const Beacon& beacon : heard.list()) test::encoded(beacon);
}

const Target kTarget("beacons", run);

}  // namespace
}  // namespace ovinta::fuzz
