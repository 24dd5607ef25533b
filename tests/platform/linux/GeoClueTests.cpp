#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"
#include "tests/support/GeoClueDouble.h"
#include "tests/support/RecordingDelegate.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using test::GeoClueDouble;
using testing::ElementsAre;
using Mood = GeoClueDouble::Mood;

class GeoClueTest : public test::BusTest {
 protected:
  GeoClueTest() { manager_->setDelegate(&delegate_); }

  void waitForStatus(AuthorizationStatus status) {
    waitUntil([&] { return services_->authorizationStatus() == status; });
  }
  void waitForLocations(std::size_t count) {
    waitUntil([&] { return delegate_.locations.size() >= count; });
  }
  std::optional<std::uint32_t> threshold() { return geoclue_.lastClients("DistanceThreshold"); }
  void follow() {
    manager_->startUpdatingLocation();
    waitForStatus(4);
  }

  GeoClueDouble geoclue_{daemon_};
  std::shared_ptr<BeaconScanner> scanner_ =
      std::make_shared<BeaconScanner>(bus_, time_.mainQueue(), log_, BeaconScanner::Options{});
  test::RecordingDelegate delegate_;
  std::shared_ptr<PositionHub> hub_ =
      test::makeGeoClueHub(bus_, time_.mainQueue(), folder_.path() / "geoclue.conf");
  std::unique_ptr<SystemLocationServices> services_ =
      std::make_unique<SystemLocationServices>(hub_, scanner_);
  std::unique_ptr<LocationManager> manager_ = services_->makeLocationManager();
};

TEST_F(GeoClueTest, FollowsThePositionFromStartToStop) {
  EXPECT_FALSE(services_->locationServicesEnabled()) << "nobody has been asked yet";
  waitUntil([&] { return services_->locationServicesEnabled(); });
  manager_->setDistanceFilter(30.9);
  manager_->startUpdatingLocation();
  manager_->startUpdatingLocation();
  waitForStatus(4);
  EXPECT_EQ(geoclue_.clientCount(), 1U);
  EXPECT_EQ(threshold(), 30U);
  EXPECT_EQ(geoclue_.lastClients("RequestedAccuracyLevel"), 8U);
  manager_->setDistanceFilter(-1);
  waitUntil([&] { return threshold() == 0U; });

  geoclue_.feed({48.1, 11.5}, 12.5, 3.5, 1'700'000'000);
  geoclue_.feed({-48.1, -11.5}, 0, -1, 1'700'000'001);
  geoclue_.feed({91, 0});
  geoclue_.feed({0, 0}, NAN);
  geoclue_.feed({1, 2}, 20, NAN, ~std::uint64_t{0});
  waitForLocations(3);
  const auto at = [](int seconds) { return Date(1'700'000'000s + seconds * 1s + 250ms); };
  EXPECT_THAT(delegate_.locations, ElementsAre(Location{{48.1, 11.5}, 12.5, 3.5, at(0)},
                                               Location{{-48.1, -11.5}, 5, -1, at(1)},
                                               Location{{1, 2}, 20, -1, kDistantPast}));

  manager_->stopUpdatingLocation();
  waitUntil([&] { return geoclue_.clientCount() == 0; });
  EXPECT_EQ(geoclue_.service().count("Stop"), 1U);
  EXPECT_EQ(services_->authorizationStatus(), 4);
}

TEST_F(GeoClueTest, SignificantChangesAreAClientOfTheirOwnAndTheStrongestAnswerCounts) {
  follow();
  geoclue_.setMood(Mood::disallowing);
  manager_->startMonitoringSignificantLocationChanges();
  waitUntil([&] { return geoclue_.service().count("DeleteClient") == 1; });
  geoclue_.feed(simulation::kSite);
  waitForLocations(1);
  EXPECT_THAT(delegate_.take(), ElementsAre("status 0", "status 4", "at 0"));
  manager_->stopUpdatingLocation();
  waitForStatus(2);
  manager_.reset();
  waitUntil([&] { return geoclue_.clientCount() == 0; });
  EXPECT_EQ(services_->authorizationStatus(), 2) << "the last answer stands";
}

TEST_F(GeoClueTest, RefusalsSetTheStatusAndEndWithTheirCause) {
  const std::tuple<Mood, AuthorizationStatus, bool> cases[] = {{Mood::disabled, 1, false},
                                                               {Mood::disallowing, 2, true}};
  for (const auto& [mood, status, isEnabled] : cases) {
    geoclue_.setMood(mood);
    manager_->startUpdatingLocation();
    waitForStatus(status);
    EXPECT_EQ(services_->locationServicesEnabled(), isEnabled);
    waitUntil([&] { return geoclue_.clientCount() == 0; });
    geoclue_.setMood(Mood::willing);
    const auto attempts = geoclue_.service().count("Start");
    time_.advance(15s);
    // A refusal stands until the service comes anew or the application starts again.
    if (status == 2) {
      time_.advance(1min);
      EXPECT_EQ(geoclue_.service().count("Start"), attempts);
      geoclue_.vanish();
      geoclue_.service().appear();
    }
    waitForStatus(4);
    manager_->stopUpdatingLocation();
  }
  EXPECT_THAT(delegate_.take(),
              ElementsAre("status 0", "status 1", "status 4", "status 2", "status 4"));
}

TEST_F(GeoClueTest, NeitherAQuestionNorAStopBeforeTheAnswerLeavesAClientBehind) {
  hub_->askPermission();
  hub_->askPermission();
  waitForStatus(4);
  waitUntil([&] { return geoclue_.service().count("DeleteClient") == 1; });
  manager_->startUpdatingLocation();
  manager_->stopUpdatingLocation();
  waitUntil([&] { return geoclue_.service().count("DeleteClient") == 2; });
  EXPECT_EQ(geoclue_.clientCount(), 0U);
  EXPECT_EQ(geoclue_.service().count("CreateClient"), 2U);
  EXPECT_EQ(geoclue_.service().count("Start"), 1U);
}

TEST_F(GeoClueTest, ASystemComponentMayAlwaysFollow) {
  test::writeFile(folder_.path() / "geoclue.conf",
                  "[org.example.app]\nallowed=true\nsystem=true\nusers=\n");
  manager_->startUpdatingLocation();
  waitForStatus(3);
}

TEST_F(GeoClueTest, WithoutAnAgentThePermissionIsNotDeterminedUntilOneComes) {
  geoclue_.setMood(Mood::withoutAgent);
  manager_->startUpdatingLocation();
  manager_->startMonitoringSignificantLocationChanges();
  waitUntil([&] { return geoclue_.service().count("CreateClient") == 2; });
  time_.advance(1min);
  EXPECT_TRUE(services_->locationServicesEnabled());
  expectNoTimer();
  manager_->stopMonitoringSignificantLocationChanges();
  geoclue_.setMood(Mood::willing);
  waitForStatus(4);
  waitUntil([&] { return geoclue_.clientCount() == 1; });
  EXPECT_EQ(geoclue_.service().count("CreateClient"), 2U) << "asked once";
  EXPECT_THAT(delegate_.take(), ElementsAre("status 0", "status 4"));

  // One that leaves while it is asked is asked again.
  manager_->stopUpdatingLocation();
  geoclue_.setMood(Mood::withoutAgent);
  manager_->startUpdatingLocation();
  waitUntil([&] { return geoclue_.service().count("CreateClient") == 3; });
  geoclue_.vanish();
  waitForStatus(0);
  geoclue_.setMood(Mood::willing);
  geoclue_.service().appear();
  waitForStatus(4);
}

TEST_F(GeoClueTest, AQuestionWithoutAnAnswerRestsUntilThereMayBeOne) {
  const auto expectRest = [&](const char* when) {
    SCOPED_TRACE(when);
    time_.advance(1min);
    const auto calls = geoclue_.service().calls();
    time_.advance(10min);
    expectNoTimer();
    EXPECT_EQ(geoclue_.service().calls(), calls);
  };
  geoclue_.setMood(Mood::disabled);
  hub_->askPermission();
  waitForStatus(1);
  waitUntil([&] { return geoclue_.clientCount() == 0; });
  expectRest("switched off");
  geoclue_.vanish();
  hub_->askAgain();
  waitForStatus(0);
  expectRest("not there");
  // Who has not asked notices it too.
  const auto silent = test::makeGeoClueHub(bus_, time_.mainQueue());
  silent->findService();
  passBy(kGeoClueName);
  EXPECT_FALSE(silent->isEnabled());
  geoclue_.setMood(Mood::willing);
  geoclue_.service().appear();
  waitUntil([&] { return silent->isEnabled(); });
  for (const auto& [mood, status] : {std::pair(Mood::willing, 4), {Mood::disallowing, 2}}) {
    geoclue_.setMood(mood);
    hub_->askPermission();
    waitForStatus(status);
    const auto attempts = geoclue_.service().count("CreateClient");
    hub_->askAgain();
    expectRest("answered");
    EXPECT_EQ(geoclue_.service().count("CreateClient"), attempts);
  }
}

TEST_F(GeoClueTest, AServiceThatRestartsIsFollowedOnAndSoIsTheBus) {
  follow();
  geoclue_.vanish();
  waitForStatus(0);
  geoclue_.service().appear();
  waitForStatus(4);
  geoclue_.feed(simulation::kSite);
  waitForLocations(1);
  daemon_.stop();
  waitForStatus(0);
  // A machine without a bus reads as off from the start.
  manager_->stopUpdatingLocation();
  manager_->startUpdatingLocation();
  waitUntil([&] { return time_.pendingTaskCount() > 0; });
  EXPECT_FALSE(services_->locationServicesEnabled());
  daemon_.start();
  GeoClueDouble again(daemon_);
  // The attempt that fails may be still to come.
  const auto isBack = [&] { return services_->authorizationStatus() == 4; };
  for (int attempt = 0; attempt < 100 && !isBack(); ++attempt) {
    time_.advance(15s);
    time_.waitUntil(isBack, 100ms);
  }
  EXPECT_THAT(delegate_.take(), ElementsAre("status 0", "status 4", "status 0", "status 4", "at 0",
                                            "status 0", "status 4"));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
