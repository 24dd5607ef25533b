#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <initializer_list>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/UserNotificationCenter.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::contract {

using testing::ElementsAre;
using testing::IsEmpty;

using Requests = std::vector<UserNotificationRequest>;

/// For the entry into a circle of 100 m around the site.
inline UserNotificationRequest request(const std::string& name) {
  return {name,
          {name, "Welcome", NotificationSound::defaultSound, {{"site", 42}}},
          {{simulation::kSite, 100, name, true, false}, false}};
}

/// What every centre of user notifications promises. A rig is a fixture with `center_`, a pointer,
/// `shown()`, the titles of what was shown so far, and the world around it: `allow(isAllowed)`,
/// whether the application may follow the user, as at first it may; `go(metresNorth, accuracy = 5)`
/// of the site; `settle()`, which has all arrive that was asked so far.
template <class Rig>
class UserNotificationCenterContract : public Rig {
 protected:
  void add(std::initializer_list<UserNotificationRequest> requests) {
    for (const auto& each : requests) this->center_->add(each, {});
    this->settle();
  }

  /// What is shown on the way.
  std::vector<std::string> travel(std::initializer_list<double> metres) {
    const auto before = static_cast<std::ptrdiff_t>(this->shown().size());
    for (const double distance : metres) this->go(distance);
    auto shown = this->shown();
    return {shown.begin() + before, shown.end()};
  }

  Requests pending() {
    std::optional<Requests> found;
    this->center_->getPendingNotificationRequests([&](Requests requests) { found = requests; });
    this->settle();
    return found.value();
  }
};
TYPED_TEST_SUITE_P(UserNotificationCenterContract);

TYPED_TEST_P(UserNotificationCenterContract, PendingRequestsAreListedReplacedAndRemoved) {
  EXPECT_THAT(this->pending(), IsEmpty());
  auto later = request("a");
  later.content.body = "Welcome back";
  later.trigger.repeats = true;
  std::atomic<int> accepted = 0;
  bool isCalling = true;  // For this thread alone.
  const auto isOutside = [&, caller = std::this_thread::get_id()] {
    return std::this_thread::get_id() != caller || !isCalling;
  };
  for (const auto& each : {request("a"), request("b"), later, request("c")}) {
    this->center_->add(each, [&](const auto& error) { accepted += !error && isOutside(); });
  }
  this->center_->getPendingNotificationRequests([&](const auto&) { EXPECT_TRUE(isOutside()); });
  this->center_->removePendingNotificationRequests({"b", "unknown"});
  isCalling = false;
  EXPECT_THAT(this->pending(), ElementsAre(later, request("c")));
  EXPECT_EQ(accepted, 4);
  this->center_->removePendingNotificationRequests({"a", "c"});
  EXPECT_THAT(this->travel({500, 50}), IsEmpty());
}

TYPED_TEST_P(UserNotificationCenterContract, FiresAtTheCrossingsThatTheTriggerAsksFor) {
  auto each = request("each"), exit = request("exit");
  each.trigger.repeats = true;
  exit.trigger.region.notifyOnEntry = false;
  exit.trigger.region.notifyOnExit = true;
  this->add({request("once"), each, exit});
  EXPECT_THAT(this->travel({500, 150}), IsEmpty());
  EXPECT_THAT(this->travel({50, 40}), ElementsAre("once", "each"));
  EXPECT_THAT(this->pending(), ElementsAre(each, exit));
  EXPECT_THAT(this->travel({150}), ElementsAre("exit"));
  EXPECT_THAT(this->travel({50, 150, 50}), ElementsAre("each", "each"));
  EXPECT_THAT(this->pending(), ElementsAre(each));
}

TYPED_TEST_P(UserNotificationCenterContract, OneThatIsArmedInsideFiresAtTheNextEntry) {
  auto elsewhere = request("elsewhere");
  elsewhere.trigger.region.center = simulation::northOfSite(9000);
  this->add({elsewhere, request("first")});
  EXPECT_THAT(this->travel({50}), IsEmpty()) << "the first known position";
  EXPECT_THAT(this->travel({500, 50}), ElementsAre("first"));
  this->add({request("one")});
  EXPECT_THAT(this->travel({40, 60}), IsEmpty());
  this->add({request("one")});
  EXPECT_THAT(this->travel({50, 500, 40}), ElementsAre("one"));
  this->go(500);
  this->add({request("two")});
  EXPECT_THAT(this->travel({50}), ElementsAre("two")) << "where it was armed is known";
  EXPECT_THAT(this->travel({9000, 50}), ElementsAre("elsewhere"));
  EXPECT_THAT(this->pending(), IsEmpty());
}

TYPED_TEST_P(UserNotificationCenterContract, FiresOnlyWhereThePositionIsKnownAndOnOneSide) {
  this->add({request("one")});
  this->go(500, 17'000);
  EXPECT_THAT(this->travel({0, 20}), IsEmpty()) << "it may have been inside";
  this->go(500);
  for (const bool isAllowed : {false, true}) {
    this->allow(isAllowed);
    EXPECT_EQ(this->travel({0}).size(), isAllowed ? 1U : 0U);
  }
}

REGISTER_TYPED_TEST_SUITE_P(UserNotificationCenterContract,
                            PendingRequestsAreListedReplacedAndRemoved,
                            FiresAtTheCrossingsThatTheTriggerAsksFor,
                            OneThatIsArmedInsideFiresAtTheNextEntry,
                            FiresOnlyWhereThePositionIsKnownAndOnOneSide);

}  // namespace ovinta::platform::contract
