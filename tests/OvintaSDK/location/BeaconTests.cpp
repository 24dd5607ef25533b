// The list of the beacons heard recently, and what their values are averaged to.
#include <limits>

#include "OvintaSDK/location/Averager.h"
#include "OvintaSDK/location/BeaconList.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta::test {
namespace {

class BeaconListTest : public LocationFixture {
 protected:
  /// The only beacon.
  Beacon single() const {
    const auto all = list.list();
    EXPECT_EQ(all.size(), 1u);
    return all.at(0);
  }

  BeaconList list{time.clock()};
};

TEST_F(BeaconListTest, FoldsSightingsOfOneBeaconTogether) {
  list.update({sighting(-60, 1), sighting(-70, 2)});
  list.update({});
  EXPECT_EQ(single().identifiers, (BeaconIdentifiers{platform::UUID::parse(kUUID).value(), 1, 2}));
  EXPECT_EQ(single().rssi.value, -65);
  EXPECT_EQ(single().distance.value, 1.5F);
  EXPECT_EQ(single().scannedAt, kStart);
  list.update({sighting(-60, 1, 3)});
  EXPECT_EQ(list.list().size(), 2u);
}

TEST_F(BeaconListTest, SkipsBeaconsOfUnknownDistance) {
  list.update({sighting(-60, -1), sighting(-60, 0), sighting(-60, std::nan(""))});
  EXPECT_TRUE(list.empty());
}

TEST_F(BeaconListTest, KeepsTheLow16BitsOfMajorAndMinor) {
  list.update({sighting(-60, 1, 0x1'0001), sighting(-70, 1, 1)});
  EXPECT_EQ(single().identifiers.major, 1);
  list.update({sighting(-60, 1, -1)});
  EXPECT_EQ(list.list().back().identifiers.major, 0xFFFF);
}

TEST_F(BeaconListTest, ForgetsABeaconThatFellSilentForMoreThanFiveSeconds) {
  list.update({sighting(-60, 1)});
  time.advance(5s);
  list.prune();
  EXPECT_EQ(single().rssi.count, 1);
  list.update({sighting(-80, 3)});
  EXPECT_EQ(single().rssi.value, -70) << "exactly five seconds are no silence";

  time.advance(5s + 1us);
  list.update({sighting(-80, 4)});
  EXPECT_EQ(single().rssi.value, -80);
  EXPECT_EQ(single().distance.value, 4);
  EXPECT_EQ(single().rssi.count, 1);

  time.advance(5s + 1us);
  list.prune();
  EXPECT_THAT(list.list(), testing::IsEmpty());
}

TEST(Averager, GivesSamplesAfterTheTenthATenthOfTheWeight) {
  // Whatever the greatest count is said to be.
  Averager averager{.maxCount = 2};
  float sum = 0;
  for (int i = 1; i <= 10; ++i) {
    const auto sample = static_cast<float>(i);
    sum += sample;
    averager.add(sample);
    EXPECT_FLOAT_EQ(averager.value, sum / sample) << "a plain mean";
  }
  averager.add(15.5);
  EXPECT_FLOAT_EQ(averager.value, 6.5);
  averager.add(-3.5);
  EXPECT_FLOAT_EQ(averager.value, 5.5);
  EXPECT_EQ(averager.count, 12);
}

TEST(Averager, RoundsTheSameOnEveryMachine) {
  Averager averager;
  for (const float metres : {3.2F, 7.4F, 6.4F, 3.6F, 7.0F}) averager.add(metres);
  // 0x1.6147acp+2 where the product is not rounded before the sum.
  EXPECT_EQ(averager.value, 0x1.6147aep+2F);
}

TEST(AveragerDeathTest, EndsTheProcessWhenTheCountOverflows) {
  Averager averager{.count = std::numeric_limits<std::int64_t>::max()};
  EXPECT_DEATH(averager.add(1), "overflow");
}

}  // namespace
}  // namespace ovinta::test
