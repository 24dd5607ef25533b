#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulation/Simulation.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UserNotificationTest : public ::testing::Test {
 protected:
  static UserNotificationRequest request(std::string identifier, bool onEntry = true,
                                         bool repeats = false) {
    return {.identifier = std::move(identifier),
            .content = {},
            .trigger = {.region = {.center = kSite,
                                   .radius = 100,
                                   .identifier = "site",
                                   .notifyOnEntry = onEntry,
                                   .notifyOnExit = !onEntry},
                        .repeats = repeats}};
  }

  void moveTo(std::initializer_list<double> metres) {
    for (const double distance : metres) {
      simulation.location().deliver({.coordinate = northOfSite(distance)});
    }
    simulation.time().runUntilIdle();
  }

  static std::vector<std::string> names(const std::vector<UserNotificationRequest>& requests) {
    std::vector<std::string> found;
    for (const auto& each : requests) found.push_back(each.identifier);
    return found;
  }

  Simulation simulation{sphericalServices(), Date{}};
  SimulatedUserNotificationCenter& center = simulation.notifications();
};

TEST_F(UserNotificationTest, FiresAsTheTriggerAsks) {
  center.add(request("unknown position"), {});
  moveTo({50});
  EXPECT_THAT(names(center.fired()), ElementsAre("unknown position"));

  center.add(request("once"), {});
  center.add(request("each", true, true), {});
  center.add(request("exit", false), {});
  moveTo({40, 50});
  EXPECT_EQ(center.fired().size(), 1u) << "armed inside";
  moveTo({150, 50, 150, 50});
  EXPECT_THAT(names(center.fired()),
              ElementsAre("unknown position", "exit", "once", "each", "each"));
  EXPECT_THAT(names(center.pending()), ElementsAre("each"));
}

TEST_F(UserNotificationTest, FiresOnlyWhereThePositionIsKnown) {
  center.add(request("a"), {});
  std::vector<std::string> seen;
  center.onFired([&](const UserNotificationRequest& fired) { seen.push_back(fired.identifier); });
  simulation.location().setAuthorizationStatus(2);
  moveTo({50});
  EXPECT_THAT(seen, IsEmpty());
  simulation.location().setAuthorizationStatus(4);
  moveTo({50});
  EXPECT_THAT(seen, ElementsAre("a"));
}

}  // namespace
}  // namespace ovinta::platform::simulation
