#include <gtest/gtest.h>

#include "platform/linux/position/RegionSide.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::linux {
namespace {

TEST(RegionSideTest, IsCertainOnlyWhenTheWholeCircleOfUncertaintyIs) {
  const struct {
    double metres, accuracy;
    RegionSide expected;
  } cases[] = {{0, 99, RegionSide::inside},         {0, 101, RegionSide::unknown},
               {80, 19, RegionSide::inside},        {80, 21, RegionSide::unknown},
               {120, 21, RegionSide::unknown},      {120, 19, RegionSide::outside},
               {1000, 17'000, RegionSide::unknown}, {20'000, 17'000, RegionSide::outside},
               {0, -1, RegionSide::unknown},        {0, NAN, RegionSide::unknown}};
  const CircularRegion region{.center = simulation::kSite, .radius = 100, .identifier = ""};
  for (const auto& [metres, accuracy, expected] : cases) {
    const Location fix{.coordinate = simulation::northOfSite(metres),
                       .horizontalAccuracy = accuracy};
    EXPECT_EQ(sideOf(region, fix, simulation::Sphere()), expected) << metres << " " << accuracy;
  }
}

}  // namespace
}  // namespace ovinta::platform::linux
