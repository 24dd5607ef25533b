#include <gtest/gtest.h>

#include "platform/portable/RegionSide.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::portable {
namespace {

using simulation::kSite;
using simulation::northOfSite;

TEST(RegionSideTest, IsCertainOnlyWhenTheWholeCircleOfUncertaintyIs) {
  const std::tuple<double, double, RegionSide> cases[] = {
      {0, 99, RegionSide::inside},         {0, 101, RegionSide::unknown},
      {80, 19, RegionSide::inside},        {80, 21, RegionSide::unknown},
      {120, 21, RegionSide::unknown},      {120, 19, RegionSide::outside},
      {1000, 17'000, RegionSide::unknown}, {20'000, 17'000, RegionSide::outside},
      {0, -1, RegionSide::unknown},        {0, NAN, RegionSide::unknown}};
  for (const auto& [metres, accuracy, expected] : cases) {
    const Location fix{northOfSite(metres), accuracy};
    EXPECT_EQ(sideOf({kSite, 100, ""}, fix, simulation::Sphere()), expected)
        << metres << " " << accuracy;
  }
}

}  // namespace
}  // namespace ovinta::platform::portable
