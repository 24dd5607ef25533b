#include <gmock/gmock.h>

#include "platform/linux/position/RegionMonitor.h"
#include "platform/simulation/VirtualTime.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::linux {
namespace {

using simulation::kSite;
using simulation::northOfSite;
using testing::ElementsAre;
using testing::IsEmpty;

CircularRegion region(const char* identifier, double radius) {
  return {.center = kSite, .radius = radius, .identifier = identifier};
}

/// Positions that the test makes up.
class Provider : public PositionProvider {
 public:
  void findService(std::function<void(bool)>) override {}
  std::unique_ptr<PositionStream> open(double, PositionHandlers opened) override {
    handlers = std::move(opened);
    handlers.onAccess(PositionAccess::granted);
    return std::make_unique<Stream>(isOpen);
  }

  bool isOpen = false;
  PositionHandlers handlers;

 private:
  class Stream : public PositionStream {
   public:
    explicit Stream(bool& isOpen) : isOpen_(isOpen) { isOpen_ = true; }
    ~Stream() override { isOpen_ = false; }
    void setDistanceFilter(double) override {}

   private:
    bool& isOpen_;
  };
};

class RegionMonitorTest : public testing::Test {
 protected:
  void feed(double metresNorth, double accuracy) {
    provider_->handlers.onLocation(
        {.coordinate = northOfSite(metresNorth), .horizontalAccuracy = accuracy});
  }

  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<Provider> provider_ = std::make_shared<Provider>();
  std::vector<std::string> events_;
  RegionMonitor monitor_{
      std::make_shared<PositionHub>(provider_, time_.mainQueue()),
      std::make_shared<simulation::Sphere>(), [this](const auto& crossed, RegionEvent event) {
        events_.push_back(crossed.identifier + (event == RegionEvent::entered ? " in" : " out"));
      }};
};

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
    EXPECT_EQ(
        sideOf(region("", 100),
               {.coordinate = northOfSite(tested.metres), .horizontalAccuracy = tested.accuracy},
               simulation::Sphere()),
        tested.expected)
        << tested.metres << " " << tested.accuracy;
  }
}

TEST_F(RegionMonitorTest, TellsOfCrossingsThatAreCertainAndWanted) {
  auto entryOnly = region("large", 1000);
  entryOnly.notifyOnExit = false;
  monitor_.start(region("small", 100));
  monitor_.start(entryOnly);
  for (const double metres : {2000, 500, 10, 500, 2000}) {
    feed(metres, 5);
    feed(0, 17'000);
  }
  EXPECT_THAT(events_, ElementsAre("large in", "small in", "small out"));
}

TEST_F(RegionMonitorTest, WhereTheDeviceStartsIsNoCrossing) {
  monitor_.start(region("one", 100));
  feed(0, 5);
  feed(200, 5);
  monitor_.start(region("one", 100));
  feed(0, 5);
  EXPECT_THAT(events_, ElementsAre("one out"));
}

TEST_F(RegionMonitorTest, FollowsThePositionWhileThereAreRegions) {
  EXPECT_FALSE(provider_->isOpen);
  monitor_.start(region("one", 100));
  monitor_.start(region("two", 100));
  monitor_.stop("one");
  EXPECT_TRUE(provider_->isOpen);
  monitor_.stop("two");
  EXPECT_FALSE(provider_->isOpen);
  EXPECT_THAT(events_, IsEmpty());
}

}  // namespace
}  // namespace ovinta::platform::linux
