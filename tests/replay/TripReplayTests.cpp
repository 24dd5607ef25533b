#include "replay/TripReplay.h"

#include <gtest/gtest.h>

#include "tests/platform/simulation/Sphere.h"

namespace ovinta::replay {
namespace {

using namespace std::chrono_literals;
using platform::simulation::northOfSite;

TEST(TripReplay, TellsAPositionASecondAtThePaceAndThenRests) {
  platform::simulation::Trip trip;
  trip.points = {{0s, northOfSite(1000)}, {100s, northOfSite(0), 30, 9}};
  const platform::simulation::Sphere sphere;
  TripReplay replay(trip, 10s, sphere);
  const struct {
    std::chrono::milliseconds time;
    /// Absent where nothing is to be told.
    std::optional<double> metresNorth;
    double accuracy = 0, speed = 0;
  } steps[] = {{5000ms, 1000, 5, 100},  {5900ms, {}},      {6000ms, 900, 5.4, 100},
               {8500ms, 650, 6.4, 100}, {8900ms, {}},      {9000ms, 600, 6.6, 100},
               {15000ms, 0, 9, 0},      {16000ms, 0, 9, 0}};
  for (const auto& step : steps) {
    const auto location = replay.next(TripReplay::Time(step.time));
    ASSERT_EQ(location.has_value(), step.metresNorth.has_value()) << step.time.count();
    if (!location) continue;
    EXPECT_NEAR(sphere.distance(location->coordinate, northOfSite(*step.metresNorth)), 0, 0.1);
    EXPECT_NEAR(location->horizontalAccuracy, step.accuracy, 1e-6) << step.time.count();
    EXPECT_NEAR(location->speed, step.speed, 0.1) << step.time.count();
  }
  TripReplay atOnce(trip, 0s, sphere);
  EXPECT_EQ(atOnce.next({})->coordinate, northOfSite(0));
}

}  // namespace
}  // namespace ovinta::replay
