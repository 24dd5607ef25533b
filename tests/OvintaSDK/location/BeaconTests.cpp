// The list of the beacons heard recently.
#include <gmock/gmock.h>

#include "OvintaSDK/location/BeaconList.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using namespace std::chrono_literals;
using platform::UUID;
using testing::IsEmpty;

const UUID kUUID = UUID::parse("2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6").value();

class BeaconListTest : public test::SDKFixture {
 protected:
  static platform::RangedBeacon beacon(std::int64_t rssi, double accuracy, std::int64_t major = 1) {
    return {.proximityUUID = kUUID, .major = major, .minor = 2, .rssi = rssi, .accuracy = accuracy};
  }

  /// The only beacon.
  Beacon single() const {
    const auto all = list.list();
    EXPECT_EQ(all.size(), 1u);
    return all.at(0);
  }

  BeaconList list;
};

TEST_F(BeaconListTest, FoldsSightingsOfOneBeaconTogether) {
  list.update({beacon(-60, 1), beacon(-70, 2)});
  list.update({});
  EXPECT_EQ(single().identifiers, (BeaconIdentifiers{kUUID, 1, 2}));
  EXPECT_EQ(single().rssi.value, -65);
  EXPECT_EQ(single().distance.value, 1.5F);
  EXPECT_EQ(single().scannedAt, test::kStart);
  list.update({beacon(-60, 1, 3)});
  EXPECT_EQ(list.list().size(), 2u);
}

TEST_F(BeaconListTest, SkipsBeaconsOfUnknownDistance) {
  list.update({beacon(-60, -1), beacon(-60, 0), beacon(-60, std::nan(""))});
  EXPECT_TRUE(list.empty());
}

TEST_F(BeaconListTest, KeepsTheLow16BitsOfMajorAndMinor) {
  list.update({beacon(-60, 1, 0x1'0001), beacon(-70, 1, 1)});
  EXPECT_EQ(single().identifiers.major, 1);
  list.update({beacon(-60, 1, -1)});
  EXPECT_EQ(list.list().back().identifiers.major, 0xFFFF);
}

TEST_F(BeaconListTest, ForgetsABeaconThatFellSilentForMoreThanFiveSeconds) {
  list.update({beacon(-60, 1)});
  time.advance(5s);
  list.prune();
  EXPECT_EQ(single().rssi.count, 1);
  list.update({beacon(-80, 3)});
  EXPECT_EQ(single().rssi.value, -70) << "exactly five seconds are no silence";

  time.advance(5s + 1us);
  list.update({beacon(-80, 4)});
  EXPECT_EQ(single().rssi.value, -80);
  EXPECT_EQ(single().distance.value, 4);
  EXPECT_EQ(single().rssi.count, 1);

  time.advance(5s + 1us);
  list.prune();
  EXPECT_THAT(list.list(), IsEmpty());
}

}  // namespace
}  // namespace ovinta
