#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "platform/linux/bluez/BeaconCollector.h"
#include "platform/linux/bluez/BeaconRegionMonitor.h"
#include "platform/linux/bluez/BlueZDevices.h"
#include "tests/support/BeaconFrames.h"

namespace ovinta::platform::linux {
namespace {

using test::beaconFrame;
using test::Bytes;
using test::kBeaconUUID;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr IBeacon kBeacon{kBeaconUUID, 0x0102, 0xFFFE, -59};

BeaconRegion region(std::string identifier, std::optional<std::uint16_t> major = {},
                    std::optional<std::uint16_t> minor = {}) {
  return {kBeaconUUID, major, minor, std::move(identifier)};
}

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
  using Data = std::map<std::uint16_t, Glib::VariantBase>;
  const auto data = [](const auto& value) { return dbus::Properties{{"ManufacturerData", value}}; };
  const dbus::Properties frame = data(
      dbus::write(Data{{1, dbus::write(Bytes{1})}, {0x4C, dbus::write(beaconFrame(kBeacon))}}));
  const auto strength = [](int rssi) {
    return dbus::Properties{{"RSSI", dbus::write(static_cast<std::int16_t>(rssi))}};
  };
  BlueZDevices devices;
  const auto rssiAfter = [&](const dbus::Properties& properties) {
    const auto sighting = devices.note("/d", properties);
    return sighting ? sighting->rssi.value_or(0) : 1;
  };
  constexpr int kNoSighting = 1, kUnknown = 0;

  EXPECT_EQ(rssiAfter(strength(-60)), kNoSighting);
  EXPECT_EQ(rssiAfter(frame), kNoSighting);
  const std::pair<int, int> cases[] = {{-60, -60}, {127, kUnknown}, {0, kUnknown}, {-1, -1}};
  for (const auto& [told, expected] : cases) EXPECT_EQ(rssiAfter(strength(told)), expected) << told;
  EXPECT_EQ(rssiAfter({{"RSSI", dbus::write("loud")}}), kNoSighting);

  // Each of these leaves nothing of the beacon known, save data that is no data at all.
  const struct {
    dbus::Properties properties;
    int expected;
  } changes[] = {{data(dbus::write("no map")), -60},
                 {data(dbus::write(Data{{0x4D, dbus::write(beaconFrame(kBeacon))}})), kNoSighting},
                 {data(dbus::write(Data{{0x4C, dbus::write("no bytes")}})), kNoSighting},
                 {data(dbus::write(Data{{0x4C, dbus::write(Bytes{2, 21, 3})}})), kNoSighting},
                 {data(dbus::write(Data{})), kNoSighting}};
  for (const auto& [properties, expected] : changes) {
    devices.learn("/d", frame);
    devices.learn("/d", properties);
    EXPECT_EQ(rssiAfter(strength(-60)), expected);
  }
  devices.learn("/d", frame);
  devices.forget("/d");
  EXPECT_EQ(rssiAfter(strength(-60)), kNoSighting);
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

TEST(BeaconRegionMonitorTest, IsInsideUntilHalfAMinuteOfSilence) {
  BeaconRegionMonitor monitor;
  monitor.start(region("all"));
  monitor.start(region("one", 0x0102, 0xFFFE));
  monitor.start(region("other", 1));
  EXPECT_FALSE(monitor.isInsideAny());
  EXPECT_THAT(monitor.hear(kBeacon), ElementsAre(region("all"), region("one", 0x0102, 0xFFFE)));
  EXPECT_THAT(monitor.hear(kBeacon), IsEmpty());
  const auto pass = [&](int seconds) {
    std::vector<BeaconRegion> left;
    while (seconds-- > 0) std::ranges::copy(monitor.passSecond(), std::back_inserter(left));
    return left;
  };
  EXPECT_THAT(pass(30), IsEmpty());
  EXPECT_THAT(monitor.hear({kBeaconUUID, 0x0102, 1, 0}), IsEmpty());
  EXPECT_THAT(pass(1), ElementsAre(region("one", 0x0102, 0xFFFE)));
  EXPECT_THAT(pass(30), ElementsAre(region("all")));
  EXPECT_FALSE(monitor.isInsideAny());
  EXPECT_THAT(pass(60), IsEmpty());

  // A region takes the place of another one of its name, with nothing known; an equal one changes
  // nothing.
  monitor.hear(kBeacon);
  monitor.start(region("all"));
  monitor.start(region("one", 0x0102));
  EXPECT_THAT(monitor.hear(kBeacon), ElementsAre(region("one", 0x0102)));
  monitor.stop("all");
  EXPECT_THAT(monitor.regions(), ElementsAre(region("other", 1), region("one", 0x0102)));
}

}  // namespace
}  // namespace ovinta::platform::linux
