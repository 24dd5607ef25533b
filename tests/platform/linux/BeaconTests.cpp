#include <gmock/gmock.h>

#include <map>

#include "platform/linux/location/beacons/BeaconCollector.h"
#include "platform/linux/location/beacons/BlueZDevices.h"
#include "tests/support/BeaconFrames.h"

namespace ovinta::platform::linuxos {
namespace {

using test::beaconFrame;
using test::Bytes;
using test::kBeaconUUID;
using testing::IsEmpty;

constexpr IBeacon kBeacon{kBeaconUUID, 0x0102, 0xFFFE, -59};

TEST(IBeaconTest, ReadsBeaconsAndNothingElse) {
  const Bytes good = beaconFrame(kBeacon);
  EXPECT_EQ(readIBeacon(good), kBeacon);
  EXPECT_EQ(readIBeacon(beaconFrame({{}, 0, 0xFFFF, 127})), (IBeacon{{}, 0, 0xFFFF, 127}));
  Bytes longer = good;
  longer.push_back(7);
  EXPECT_EQ(readIBeacon(longer), kBeacon);

  Bytes otherKind = good, otherLength = good;
  otherKind[0] = 0x10;
  otherLength[1] = 20;
  for (const Bytes& bad : {otherKind, otherLength, Bytes(good.begin(), good.end() - 1),
                           Bytes(good.begin() + 1, good.end()), Bytes{2, 21}, Bytes{2}, Bytes{}}) {
    EXPECT_EQ(readIBeacon(bad), std::nullopt) << testing::PrintToString(bad);
  }
}

TEST(BlueZDevicesTest, TellASightingByItsStrength) {
  using Data = std::map<std::uint16_t, dbus::Variant>;
  const auto data = [](const auto& value) {
    return dbus::Properties{{"ManufacturerData", dbus::write(value)}};
  };
  const dbus::Variant frame = dbus::write(beaconFrame(kBeacon));
  const dbus::Properties beacon = data(Data{{1, dbus::write(Bytes{1})}, {0x4C, frame}});
  constexpr int kNoSighting = 1, kUnknown = 0;
  const std::tuple<dbus::Properties, int, int> cases[] = {
      {beacon, -60, -60},
      {beacon, -1, -1},
      {beacon, -127, -127},
      {beacon, -128, kUnknown},
      {beacon, 0, kUnknown},
      {beacon, 127, kUnknown},
      {data("no map"), -60, -60},
      {data(Data{{0x4D, frame}}), -60, kNoSighting},
      {{}, -60, kNoSighting},
      {beacon, -60, -60},
      {data(Data{{0x4C, dbus::write("no bytes")}}), -60, kNoSighting}};
  BlueZDevices devices;
  // Each case goes on from the one before.
  for (const auto& [known, told, expected] : cases) {
    EXPECT_FALSE(devices.note("/d", known).has_value());
    const auto sighting =
        devices.note("/d", {{"RSSI", dbus::write(static_cast<std::int16_t>(told))}});
    EXPECT_EQ(sighting ? sighting->rssi.value_or(kUnknown) : kNoSighting, expected) << told;
  }
  devices.learn("/d", beacon);
  EXPECT_FALSE(devices.note("/d", {{"RSSI", dbus::write("loud")}}).has_value());
}

TEST(BeaconCollectorTest, TakesTheMeanAndEstimatesTheDistance) {
  const struct {
    std::vector<std::optional<int>> rssis;
    int measuredPower;
    double exponent;
    int rssi;
    double accuracy;
  } cases[] = {{{-59}, -59, 2, -59, 1},
               {{-79}, -59, 2, -79, 10},
               {{-55}, -59, 2, -55, 0.631},
               {{-79}, -59, 4, -79, 3.162},
               {{-70, -80, std::nullopt, -86}, -59, 2, -79, 9.624},
               {{std::nullopt}, -59, 2, 0, -1},
               {{-59}, 0, 2, -59, -1}};
  for (const auto& tested : cases) {
    BeaconCollector collector;
    IBeacon beacon = kBeacon;
    beacon.measuredPower = static_cast<std::int8_t>(tested.measuredPower);
    for (const auto& rssi : tested.rssis) collector.add({beacon, rssi});
    const auto beacons = collector.take(tested.exponent);
    ASSERT_EQ(beacons.size(), 1u);
    EXPECT_EQ(beacons[0].minor, 0xFFFE);
    EXPECT_EQ(beacons[0].rssi, tested.rssi);
    EXPECT_NEAR(beacons[0].accuracy, tested.accuracy, 0.001);
    EXPECT_THAT(collector.take(2), IsEmpty());
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
