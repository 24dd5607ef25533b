#include <gmock/gmock.h>

#include "platform/standard/CircularRegionMonitor.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::standard {
namespace {

using simulation::kSite;
using simulation::northOfSite;
using testing::ElementsAre;

CircularRegion region(const char* identifier, double radius) {
  return {.center = kSite, .radius = radius, .identifier = identifier};
}

Location fix(double metresNorth, double accuracy) {
  return {.coordinate = northOfSite(metresNorth), .horizontalAccuracy = accuracy};
}

TEST(RegionSideTest, IsCertainOnlyWhenTheWholeCircleOfUncertaintyIs) {
  const struct {
    double metres, accuracy;
    RegionSide expected;
  } cases[] = {{0, 99, RegionSide::inside},         {0, 101, RegionSide::unknown},
               {80, 19, RegionSide::inside},        {80, 21, RegionSide::unknown},
               {120, 21, RegionSide::unknown},      {120, 19, RegionSide::outside},
               {1000, 17'000, RegionSide::unknown}, {20'000, 17'000, RegionSide::outside},
               {0, -1, RegionSide::unknown},        {0, NAN, RegionSide::unknown}};
  for (const auto& tested : cases) {
    EXPECT_EQ(sideOf(region("", 100), fix(tested.metres, tested.accuracy), simulation::Sphere()),
              tested.expected)
        << tested.metres << " " << tested.accuracy;
  }
}

TEST(CircularRegionMonitorTest, TellsOfCrossingsThatAreCertainAndWantedAndOfNoStart) {
  CircularRegionMonitor monitor;
  std::vector<std::string> told;
  const auto feed = [&](double metresNorth, double accuracy) {
    for (const auto& [crossed, event] :
         monitor.judge(fix(metresNorth, accuracy), simulation::Sphere())) {
      told.push_back(crossed.identifier + (event == RegionEvent::entered ? " in" : " out"));
    }
  };
  auto entryOnly = region("large", 1000);
  entryOnly.notifyOnExit = false;
  monitor.start(region("small", 100));
  monitor.start(entryOnly);
  for (const double metres : {10, 2000, 500, 10, 500, 2000}) {
    feed(metres, 5);
    feed(0, 17'000);
  }
  EXPECT_THAT(told, ElementsAre("small out", "large in", "small in", "small out"));
  monitor.start(region("small", 100));
  monitor.stop("large");
  feed(0, 5);
  EXPECT_EQ(told.size(), 4U);
  monitor.stop("small");
  EXPECT_TRUE(monitor.isEmpty());
}

}  // namespace
}  // namespace ovinta::platform::standard
