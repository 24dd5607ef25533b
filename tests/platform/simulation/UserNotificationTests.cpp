#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulation/Simulation.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::simulation {
namespace {

TEST(SimulatedUserNotificationCenterTest, FiresOnlyWhereThePositionIsKnown) {
  Simulation simulation{sphericalServices(), Date{}};
  std::vector<std::string> seen;
  simulation.notifications().onFired(
      [&](const UserNotificationRequest& fired) { seen.push_back(fired.identifier); });
  simulation.notifications().add(
      {"a", {}, {.region = {.center = kSite, .radius = 100, .identifier = "site"}}}, {});
  simulation.location().deliver({.coordinate = northOfSite(500)});
  simulation.time().runUntilIdle();
  for (const AuthorizationStatus status : {2, 4}) {
    EXPECT_THAT(seen, ::testing::IsEmpty());
    simulation.location().setAuthorizationStatus(status);
    simulation.location().deliver({.coordinate = northOfSite(50)});
    simulation.time().runUntilIdle();
  }
  EXPECT_THAT(seen, ::testing::ElementsAre("a"));
}

}  // namespace
}  // namespace ovinta::platform::simulation
