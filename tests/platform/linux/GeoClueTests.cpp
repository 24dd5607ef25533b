#include "platform/linux/SystemLocationServices.h"
#include "platform/linux/position/GeoClueProvider.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BusFixture.h"
#include "tests/support/Files.h"
#include "tests/support/GeoClueDouble.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using test::GeoClueDouble;
using testing::ElementsAre;
using Mood = GeoClueDouble::Mood;

class Delegate : public LocationManagerDelegate {
 public:
  void didUpdateLocations(const std::vector<Location>& found) override {
    locations.insert(locations.end(), found.begin(), found.end());
    if (onLocation) onLocation();
  }
  void didChangeAuthorizationStatus(AuthorizationStatus status) override {
    statuses.push_back(status);
  }
  void didRangeBeacons(const std::vector<RangedBeacon>&, const BeaconRegion&) override {}
  void didEnterRegion(const Region& region) override {
    crossings.push_back("in " + identifier(region));
  }
  void didExitRegion(const Region& region) override {
    crossings.push_back("out " + identifier(region));
  }

  std::vector<Location> locations;
  std::vector<AuthorizationStatus> statuses;
  std::vector<std::string> crossings;
  std::function<void()> onLocation;
};

class GeoClueTest : public test::BusTest {
 protected:
  GeoClueTest() { manager_->setDelegate(&delegate_); }

  std::shared_ptr<PositionHub> makeHub(std::chrono::milliseconds answerTimeout) {
    return std::make_shared<PositionHub>(
        std::make_shared<GeoClueProvider>(
            bus_, time_.mainQueue(),
            GeoClueProvider::Options{.desktopID = "org.example.app",
                                     .configuration = folder_.path() / "geoclue.conf",
                                     .answerTimeout = answerTimeout}),
        time_.mainQueue());
  }

  void waitForStatus(AuthorizationStatus status) {
    waitUntil([&] { return !delegate_.statuses.empty() && delegate_.statuses.back() == status; });
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
      std::make_shared<BeaconScanner>(bus_, time_.mainQueue(), log_, BeaconScanner::Settings{});
  Delegate delegate_;
  std::shared_ptr<PositionHub> hub_ = makeHub(GeoClueProvider::Options().answerTimeout);
  std::unique_ptr<SystemLocationServices> services_ = std::make_unique<SystemLocationServices>(
      hub_, scanner_, std::make_shared<simulation::Sphere>());
  std::unique_ptr<LocationManager> manager_ = services_->makeLocationManager();
};

TEST_F(GeoClueTest, FollowsThePositionFromStartToStop) {
  EXPECT_FALSE(services_->locationServicesEnabled()) << "nobody has been asked yet";
  waitUntil([&] { return services_->locationServicesEnabled(); });
  EXPECT_EQ(geoclue_.service().calls(), std::vector<std::string>()) << "idle";
  manager_->setDistanceFilter(30.9);
  manager_->startUpdatingLocation();
  manager_->startUpdatingLocation();
  waitForStatus(4);
  EXPECT_EQ(services_->authorizationStatus(), 4);
  EXPECT_EQ(geoclue_.clientCount(), 1U);
  EXPECT_EQ(threshold(), 30U);
  EXPECT_EQ(geoclue_.lastClients("RequestedAccuracyLevel"), 8U);
  manager_->setDistanceFilter(-1);
  waitUntil([&] { return threshold() == 0U; });

  geoclue_.feed(48.1, 11.5, 12.5, 3.5, 1'700'000'000);
  geoclue_.feed(-48.1, -11.5, 0, -1, 1'700'000'001);
  geoclue_.feed(91, 0);
  geoclue_.feed(0, 0, NAN);
  geoclue_.feed(1, 2, 20, NAN, ~std::uint64_t{0});
  waitForLocations(3);
  const auto at = [](int seconds) { return Date(1'700'000'000s + seconds * 1s + 250ms); };
  EXPECT_THAT(delegate_.locations, ElementsAre(Location{{48.1, 11.5}, 12.5, 3.5, at(0)},
                                               Location{{-48.1, -11.5}, 5, -1, at(1)},
                                               Location{{1, 2}, 20, -1, kDistantPast}));

  delegate_.onLocation = [this] { manager_->stopUpdatingLocation(); };
  geoclue_.feed(3, 4);
  geoclue_.feed(5, 6);
  waitUntil([&] { return geoclue_.clientCount() == 0; });
  EXPECT_EQ(delegate_.locations.size(), 4U);
  EXPECT_EQ(geoclue_.service().count("Stop"), 1U);
  const auto calls = geoclue_.service().calls();
  time_.advance(1min);
  EXPECT_EQ(time_.pendingTaskCount(), 0U);
  EXPECT_EQ(geoclue_.service().calls(), calls) << "idle again";
  EXPECT_EQ(services_->authorizationStatus(), 4);
  EXPECT_THAT(delegate_.statuses, ElementsAre(0, 4));
}

TEST_F(GeoClueTest, SignificantChangesAreAClientOfTheirOwn) {
  manager_->setDistanceFilter(3);
  manager_->startUpdatingLocation();
  waitUntil([&] { return geoclue_.service().count("Start") == 1; });
  manager_->startMonitoringSignificantLocationChanges();
  waitUntil([&] { return geoclue_.service().count("Start") == 2; });
  EXPECT_EQ(geoclue_.clientCount(), 2U);
  EXPECT_EQ(threshold(), 500U);
  manager_->stopUpdatingLocation();
  waitUntil([&] { return geoclue_.clientCount() == 1; });
  manager_.reset();
  waitUntil([&] { return geoclue_.clientCount() == 0; });
}

TEST_F(GeoClueTest, RefusalsSetTheStatusAndEndWithTheirCause) {
  const struct {
    Mood mood;
    AuthorizationStatus status;
    bool isEnabled;
  } cases[] = {{Mood::disabled, 1, false}, {Mood::disallowing, 2, true}};
  for (const auto& tested : cases) {
    geoclue_.setMood(tested.mood);
    manager_->startUpdatingLocation();
    waitForStatus(tested.status);
    EXPECT_EQ(services_->locationServicesEnabled(), tested.isEnabled);
    waitUntil([&] { return geoclue_.clientCount() == 0; });
    geoclue_.setMood(Mood::willing);
    const auto attempts = geoclue_.service().count("Start");
    time_.advance(15s);
    // A refusal stands until the service comes anew or the application starts again.
    if (tested.status == 2) {
      time_.advance(1min);
      EXPECT_EQ(geoclue_.service().count("Start"), attempts);
      geoclue_.vanish();
      geoclue_.service().appear();
    }
    waitForStatus(4);
    manager_->stopUpdatingLocation();
  }
  EXPECT_THAT(delegate_.statuses, ElementsAre(0, 1, 4, 2, 4));
}

TEST_F(GeoClueTest, AskingForThePermissionKeepsNothingRunning) {
  hub_->askPermission();
  hub_->askPermission();
  waitForStatus(4);
  waitUntil([&] { return geoclue_.service().count("DeleteClient") == 1; });
  EXPECT_EQ(geoclue_.service().count("CreateClient"), 1U);
  EXPECT_EQ(geoclue_.clientCount(), 0U);
}

TEST_F(GeoClueTest, CirclesAreJudgedByPositionsWhileThereAreAny) {
  const auto circle = [](double radius) {
    return CircularRegion{.center = simulation::kSite, .radius = radius, .identifier = "one"};
  };
  const auto feed = [&](double metresNorth, double accuracy) {
    const Coordinate at = simulation::northOfSite(metresNorth);
    geoclue_.feed(at.latitude, at.longitude, accuracy);
  };
  manager_->startMonitoring(circle(5000));
  manager_->startMonitoring(circle(100));
  waitForStatus(4);
  EXPECT_EQ(threshold(), 10U);
  for (const double metres : {30, 2000, 30, 150, 2000}) {
    feed(metres, 20);
    feed(0, 17'000);
  }
  waitUntil([&] { return delegate_.crossings.size() >= 3; });
  EXPECT_THAT(delegate_.crossings, ElementsAre("out one", "in one", "out one"));
  EXPECT_THAT(delegate_.locations, testing::IsEmpty());
  manager_->stopMonitoring(circle(1));
  waitUntil([&] { return geoclue_.clientCount() == 0; });
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
  EXPECT_EQ(time_.pendingTaskCount(), 0U) << "it waits and does nothing";
  manager_->stopMonitoringSignificantLocationChanges();
  geoclue_.setMood(Mood::willing);
  waitForStatus(4);
  waitUntil([&] { return geoclue_.clientCount() == 1; });
  EXPECT_EQ(geoclue_.service().count("CreateClient"), 2U) << "asked once";
  EXPECT_THAT(delegate_.statuses, ElementsAre(0, 4));

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
  const auto attempts = geoclue_.service().count("CreateClient");
  time_.advance(1min);
  EXPECT_EQ(geoclue_.service().count("CreateClient"), attempts) << "the old attempt is over";
}

TEST_F(GeoClueTest, AQuestionWithoutAnAnswerRestsUntilThereMayBeOne) {
  const auto expectRest = [&](const char* when) {
    SCOPED_TRACE(when);
    time_.advance(1min);
    const auto calls = geoclue_.service().calls();
    time_.advance(10min);
    EXPECT_EQ(time_.pendingTaskCount(), 0U);
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
  geoclue_.setMood(Mood::willing);
  geoclue_.service().appear();
  waitForStatus(4);
  const auto attempts = geoclue_.service().count("CreateClient");
  hub_->askAgain();
  expectRest("answered");
  EXPECT_EQ(geoclue_.service().count("CreateClient"), attempts);
}

TEST_F(GeoClueTest, AStopBeforeTheAnswerLeavesNoClientBehind) {
  manager_->startUpdatingLocation();
  manager_->stopUpdatingLocation();
  waitUntil([&] { return geoclue_.service().count("DeleteClient") == 1; });
  EXPECT_EQ(geoclue_.clientCount(), 0U);
  EXPECT_EQ(geoclue_.service().count("Start"), 0U);
}

TEST_F(GeoClueTest, AServiceThatRestartsIsFollowedOnAndSoIsTheBus) {
  follow();
  geoclue_.vanish();
  waitForStatus(0);
  EXPECT_FALSE(services_->locationServicesEnabled());
  geoclue_.service().appear();
  waitForStatus(4);
  geoclue_.feed(1, 1);
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
  const auto isBack = [&] { return delegate_.statuses.back() == 4; };
  for (int attempt = 0; attempt < 100 && !isBack(); ++attempt) {
    time_.advance(15s);
    time_.waitUntil(isBack, 100ms);
  }
  EXPECT_THAT(delegate_.statuses, ElementsAre(0, 4, 0, 4, 0, 4));
}

}  // namespace
}  // namespace ovinta::platform::linux
