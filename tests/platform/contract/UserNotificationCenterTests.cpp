// What every notification centre promises.
#include <atomic>

#include "platform/simulation/Simulation.h"
#include "tests/platform/linux/UserNotificationFixture.h"

namespace ovinta::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Requests = std::vector<UserNotificationRequest>;

/// The centre of the simulation.
class SimulatedNotificationRig : public testing::Test {
 protected:
  /// Has all that was asked so far arrive.
  void settle() { simulation_.time().runUntilIdle(); }
  /// The titles of what was shown so far.
  std::vector<std::string> shown() {
    std::vector<std::string> titles;
    for (const auto& each : simulation_.notifications().fired()) {
      titles.push_back(each.content.title);
    }
    return titles;
  }

  simulation::Simulation simulation_{simulation::sphericalServices(), Date{}};
  simulation::SimulatedLocation* location_ = &simulation_.location();
  UserNotificationCenter* center_ = &simulation_.notifications();
};

/// The one of this system, with the desktop played by a double.
class LinuxNotificationRig : public linuxos::UserNotificationTest {
 protected:
  LinuxNotificationRig() {
    center_ = makeCenter({}, linuxos::PositionSource::automatic, true, bus_);
  }

  void settle() {
    // What is shown takes a few steps of the store, the main queue and the desktop, which answers
    // over the centre's own bus in the order of the questions.
    for (int step = 0; step < 6; ++step) {
      pendingOf(*center_);
      passBy(linuxos::kNotificationsName);
    }
  }
  std::vector<std::string> shown() {
    std::vector<std::string> titles;
    for (const auto& each : desktop_.shown()) titles.push_back(each.title);
    return titles;
  }
};

/// For the entry into a circle of 100 m around the site.
UserNotificationRequest request(const std::string& name) {
  return {name,
          {name, "Welcome", NotificationSound::defaultSound, {{"site", 42}}},
          {{simulation::kSite, 100, name, true, false}, false}};
}

template <class Rig>
class UserNotificationCenterTest : public Rig {
 protected:
  void add(std::initializer_list<UserNotificationRequest> requests) {
    for (const auto& each : requests) this->center_->add(each, {});
    this->settle();
  }

  void go(double metresNorth, double accuracy = 5) {
    this->location_->deliver({simulation::northOfSite(metresNorth), accuracy});
    this->settle();
  }

  /// What is shown on the way.
  std::vector<std::string> travel(std::initializer_list<double> metres) {
    const auto before = static_cast<std::ptrdiff_t>(this->shown().size());
    for (const double distance : metres) go(distance);
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

using Rigs = testing::Types<SimulatedNotificationRig, LinuxNotificationRig>;
TYPED_TEST_SUITE(UserNotificationCenterTest, Rigs);

TYPED_TEST(UserNotificationCenterTest, PendingRequestsAreListedReplacedAndRemoved) {
  EXPECT_THAT(this->pending(), IsEmpty());
  auto later = request("a");
  later.content.body = "Welcome back";
  later.trigger.repeats = true;
  std::atomic<int> accepted = 0;
  for (const auto& each : {request("a"), request("b"), later, request("c")}) {
    this->center_->add(each, [&](const auto& error) { accepted += !error; });
  }
  this->center_->removePendingNotificationRequests({"b", "unknown"});
  EXPECT_THAT(this->pending(), ElementsAre(later, request("c")));
  EXPECT_EQ(accepted, 4);
  this->center_->removePendingNotificationRequests({"a", "c"});
  EXPECT_THAT(this->travel({500, 50}), IsEmpty());
}

TYPED_TEST(UserNotificationCenterTest, FiresAtTheCrossingsThatTheTriggerAsksFor) {
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

TYPED_TEST(UserNotificationCenterTest, OneThatIsArmedInsideFiresAtTheNextEntry) {
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

TYPED_TEST(UserNotificationCenterTest, FiresOnlyWhereThePositionIsKnownAndOnOneSide) {
  this->add({request("one")});
  this->go(500, 17'000);
  EXPECT_THAT(this->travel({0, 20}), IsEmpty()) << "it may have been inside";
  this->go(500);
  for (const AuthorizationStatus status : {2, 4}) {
    this->location_->setAuthorizationStatus(status);
    this->settle();
    EXPECT_EQ(this->travel({0}).size(), status == 4 ? 1U : 0U);
  }
}

}  // namespace
}  // namespace ovinta::platform
