// When the user is followed, how closely, and which beacon regions are watched.
#include <cmath>
#include <functional>
#include <memory>
#include <thread>
#include <tuple>
#include <vector>

#include "OvintaSDK/location/TrackingProfile.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta::test {
namespace {

using platform::ActivityType;
using platform::BatteryState;
using platform::LocationAccuracy;

class Tracking : public LocationFixture {
 protected:
  bool isTracking() const {
    EXPECT_EQ(location->isUpdating(), location->isMonitoringSignificantChanges());
    return location->isUpdating();
  }

  static platform::Region platformRegion(std::optional<std::uint16_t> major,
                                         std::optional<std::uint16_t> minor) {
    return platform::IdentifiedBeaconRegion{platform::UUID::parse(kUUID).value(), major, minor,
                                            "siteBeaconRegion"};
  }
};

TEST_F(Tracking, SetsTheManagerUpAndWaits) {
  start();
  EXPECT_TRUE(location->allowsBackgroundUpdates());
  EXPECT_EQ(location->distanceFilter(), 3);
  EXPECT_EQ(location->desiredAccuracy(), std::nullopt);
  fetchOrders({with(requiredOrder(), {{"state", "cancelled"}})});
  services.notificationCenter->post({.name = platform::kApplicationDidBecomeActive, .object = {}});
  drain();
  EXPECT_FALSE(isTracking());
  EXPECT_EQ(timesLogged(Line::tracking), 0);
}

TEST_F(Tracking, NeedsThePermission) {
  const Steps withheld{posted(SDKNotification::locationNotAuthorized), logged(Line::notTracking)};
  const Steps started{logged(Line::tracking)};
  const std::pair<platform::AuthorizationStatus, Steps> cases[] = {
      {0, {posted(SDKNotification::locationAuthorizationNotDetermined)}},
      {1, withheld},
      {2, withheld},
      {3, started},
      {4, started},
      {5, withheld}};
  const Steps fetched{logged(Line::gettingOrders), requested("GET", "m/v1/orders", kToken),
                      posted(SDKNotification::ordersUpdated, theOrders({7})), logged(Line::synced)};
  for (const auto& [status, consequence] : cases) {
    SCOPED_TRACE(status);
    restartWith([](platform::Services&) {});
    signIn();
    location->setAuthorizationStatus(status);
    startTracking({});
    fetchOrders({requiredOrder()});
    EXPECT_THAT(happened(), are(fetched, consequence));
    fetchOrders({requiredOrder()});
    EXPECT_THAT(happened(), are(fetched)) << "once";
    const bool isAllowed = platform::isAuthorized(status);
    EXPECT_EQ(isTracking(), isAllowed);
    EXPECT_EQ(location->desiredAccuracy(),
              isAllowed ? std::optional(LocationAccuracy::best) : std::nullopt);
  }
}

TEST_F(Tracking, LastsAsLongAsAnOrderIsOpen) {
  startTracking({7, 8});
  for (const auto id : {7, 8}) {
    EXPECT_TRUE(isTracking());
    Ovinta::orders().event(id, OrderState::completed);
    drain();
  }
  EXPECT_FALSE(isTracking());
  fetchOrders({requiredOrder(9)});
  EXPECT_TRUE(isTracking());
  EXPECT_EQ(timesLogged(Line::tracking), 2);
  Ovinta::orders().setOpen(std::nullopt);
  services.notificationCenter->post({.name = SDKNotification::orderUpdated, .object = {}});
  EXPECT_TRUE(isTracking()) << "orders are looked at on the main queue";
  drain();
  EXPECT_FALSE(isTracking());
}

TEST_F(Tracking, StopsWhenTheApplicationSaysSoUntilOrdersAreUpdated) {
  Ovinta::stopLocationUpdates();
  start();
  fetchOrders({orderWithRegions(7, {region()})});
  Ovinta::stopLocationUpdates();
  EXPECT_FALSE(isTracking());
  EXPECT_THAT(location->rangedRegions(), testing::IsEmpty());
  EXPECT_THAT(location->monitoredRegions(), testing::IsEmpty());
  fetchOrders({orderWithRegions(7, {region()})});
  EXPECT_TRUE(isTracking());
  EXPECT_EQ(location->rangedRegions().size(), 1u);

  std::thread(Ovinta::stopLocationUpdates).join();
  EXPECT_TRUE(isTracking()) << "off the main thread the main queue is asked";
  drain();
  EXPECT_FALSE(isTracking());
}

TEST_F(Tracking, WatchesTheBeaconRegionsOfAllOpenOrders) {
  start();
  const auto one = region({{"major", 1}});
  const auto two = region({{"major", 1}, {"minor", 2}});
  const auto withoutMajor = region({{"minor", 3}});
  fetchOrders({orderWithRegions(1, {one, two}), orderWithRegions(2, {two, withoutMajor}),
               with(orderWithRegions(3, {region({{"major", 9}})}), {{"state", "gone"}})});
  EXPECT_THAT(location->rangedRegions(),
              testing::UnorderedElementsAre(platformRegion(1, {}), platformRegion(1, 2),
                                            platformRegion({}, {})));
  EXPECT_EQ(location->monitoredRegions().size(), 1u) << "keyed by the one identifier";

  fetchOrders({orderWithRegions(4, {region({{"major", 65535}})})});
  EXPECT_THAT(location->rangedRegions(), testing::ElementsAre(platformRegion(65535, {})));
  EXPECT_THAT(location->monitoredRegions(), testing::ElementsAre(platformRegion(65535, {})));
}

/// Hands everything on, counts what is started and stopped for regions, and refuses what it is told
/// to.
class CountingManager : public platform::LocationManager {
 public:
  explicit CountingManager(std::unique_ptr<platform::LocationManager> inner)
      : inner_(std::move(inner)) {}

  void setDelegate(platform::LocationManagerDelegate* to) override { inner_->setDelegate(to); }
  void setAllowsBackgroundLocationUpdates(bool allows) override {
    inner_->setAllowsBackgroundLocationUpdates(allows);
  }
  void setDistanceFilter(double metres) override { inner_->setDistanceFilter(metres); }
  void setDesiredAccuracy(LocationAccuracy accuracy) override {
    inner_->setDesiredAccuracy(accuracy);
  }
  void setActivityType(ActivityType type) override { inner_->setActivityType(type); }
  void startUpdatingLocation() override { inner_->startUpdatingLocation(); }
  void stopUpdatingLocation() override { inner_->stopUpdatingLocation(); }
  void startMonitoringSignificantLocationChanges() override {
    inner_->startMonitoringSignificantLocationChanges();
  }
  void stopMonitoringSignificantLocationChanges() override {
    inner_->stopMonitoringSignificantLocationChanges();
  }
  void startRangingBeacons(const platform::IdentifiedBeaconRegion& region) override {
    ++calls;
    if (refusedRangings == 0 || refusedRangings-- == 0) inner_->startRangingBeacons(region);
  }
  void stopRangingBeacons(const platform::IdentifiedBeaconRegion& region) override {
    ++calls;
    inner_->stopRangingBeacons(region);
  }
  std::vector<platform::Region> rangedRegions() const override { return inner_->rangedRegions(); }
  void startMonitoring(const platform::Region& region) override {
    ++calls;
    if (refusedMonitorings == 0 || refusedMonitorings-- == 0) inner_->startMonitoring(region);
  }
  void stopMonitoring(const platform::Region& region) override {
    ++calls;
    inner_->stopMonitoring(region);
  }
  std::vector<platform::Region> monitoredRegions() const override {
    return inner_->monitoredRegions();
  }

  int calls = 0;
  int refusedRangings = 0;
  int refusedMonitorings = 0;

 private:
  const std::unique_ptr<platform::LocationManager> inner_;
};

/// Location services that show the manager which was made last.
struct ShownServices : platform::LocationServices {
  bool locationServicesEnabled() const override { return inner->locationServicesEnabled(); }
  platform::AuthorizationStatus authorizationStatus() const override {
    return inner->authorizationStatus();
  }
  std::unique_ptr<platform::LocationManager> makeLocationManager() override {
    auto made = std::make_unique<CountingManager>(inner->makeLocationManager());
    manager = made.get();
    return made;
  }
  std::shared_ptr<platform::LocationServices> inner;
  CountingManager* manager = nullptr;
};

class TrackingOfRegions : public Tracking {
 protected:
  TrackingOfRegions() {
    shown_->inner = location;
    restartWith([this](platform::Services& changed) { changed.location = shown_; });
    signIn();
    start();
  }

  CountingManager& manager() const { return *shown_->manager; }

  const platform::Dictionary one = region({{"major", 1}}), two = region({{"major", 2}});

 private:
  const std::shared_ptr<ShownServices> shown_ = std::make_shared<ShownServices>();
};

TEST_F(TrackingOfRegions, AreLeftAloneWhileTheOrdersNameTheSame) {
  // To the platform the two are one.
  const auto three = region({{"minor", 3}}), four = region({{"minor", 4}});
  fetchOrders({orderWithRegions(1, {one, three}), orderWithRegions(2, {two, four})});
  const int started = manager().calls;
  fetchOrders({orderWithRegions(1, {one, three}), orderWithRegions(2, {two, four})});
  fetchOrders({orderWithRegions(2, {four, two, one}), orderWithRegions(3, {three, one})});
  EXPECT_EQ(manager().calls, started);
  EXPECT_EQ(location->rangedRegions().size(), 3u);
  location->setAuthorizationStatus(platform::kAuthorizationDenied);
  drain();
  EXPECT_EQ(manager().calls, started);
  location->setAuthorizationStatus(platform::kAuthorizedAlways);
  drain();
  EXPECT_GT(manager().calls, started) << "what the platform dropped with the permission";
}

TEST_F(TrackingOfRegions, AreAskedForAgainWhenThePlatformRefusedThem) {
  for (int CountingManager::*const refused :
       {&CountingManager::refusedRangings, &CountingManager::refusedMonitorings}) {
    Ovinta::stopLocationUpdates();
    // Of two regions the second replaces the first in what is monitored.
    manager().*refused = 2;
    for (int i = 0; i < 2; ++i) {
      fetchOrders({orderWithRegions(1, {one, two})});
      const auto expected = [&](auto what, std::size_t count) {
        return i == 0 && refused == what ? 0 : count;
      };
      EXPECT_EQ(location->rangedRegions().size(), expected(&CountingManager::refusedRangings, 2));
      EXPECT_EQ(location->monitoredRegions().size(),
                expected(&CountingManager::refusedMonitorings, 1));
    }
    const int started = manager().calls;
    fetchOrders({orderWithRegions(1, {one, two})});
    EXPECT_EQ(manager().calls, started);
  }
}

TEST_F(TrackingOfRegions, AreRestoredWhenOthersHaveChangedThem) {
  platform::CircularRegion foreign;
  foreign.identifier = "foreign";
  const std::vector<std::function<void(platform::LocationManager&)>> disturbances{
      [&](auto& manager) { manager.startMonitoring(foreign); },
      [](auto& manager) { manager.stopMonitoring(manager.monitoredRegions().at(0)); },
      [&](auto& manager) {
        manager.stopRangingBeacons(std::get<platform::BeaconRegion>(platformRegion(1, {})));
      },
      [&](auto& manager) {
        manager.startRangingBeacons(std::get<platform::BeaconRegion>(platformRegion(3, {})));
      }};
  const auto expectRegions = [&] {
    EXPECT_THAT(location->rangedRegions(),
                testing::UnorderedElementsAre(platformRegion(1, {}), platformRegion(2, {})));
    EXPECT_THAT(location->monitoredRegions(), testing::ElementsAre(platformRegion(2, {})));
  };
  for (std::size_t i = 0; i < disturbances.size(); ++i) {
    SCOPED_TRACE(i);
    fetchOrders({orderWithRegions(1, {one}), orderWithRegions(2, {two})});
    expectRegions();
    disturbances[i](manager());
    fetchOrders({orderWithRegions(3, {two, one, two})});
    expectRegions();
    disturbances[i](manager());
    fetchOrders({orderWithRegions(3, {two, one, two})});
    expectRegions();
  }
}

TEST(TrackingProfile, FollowsTheTableUpToItsBorders) {
  constexpr auto kNear = LocationAccuracy::bestForNavigation;
  constexpr auto kFar = LocationAccuracy::best;
  const auto below = [](double border) { return std::nextafter(border, 0); };
  // Per distance: the filter while the battery is charged, and otherwise.
  const std::tuple<double, LocationAccuracy, ActivityType, double, double> rows[] = {
      {below(250), kNear, ActivityType::otherNavigation, 3, 3},
      {250, kNear, ActivityType::otherNavigation, 15, 30},
      {below(500), kNear, ActivityType::otherNavigation, 15, 30},
      {500, kFar, ActivityType::automotiveNavigation, 100, 200},
      {below(2000), kFar, ActivityType::automotiveNavigation, 100, 200},
      {2000, kFar, ActivityType::automotiveNavigation, 200, 400}};
  for (const auto& [distance, accuracy, activity, charging, otherwise] : rows) {
    for (const auto battery : {BatteryState::charging, BatteryState::unknown,
                               BatteryState::unplugged, BatteryState::full}) {
      const double filter = battery == BatteryState::charging ? charging : otherwise;
      EXPECT_EQ(trackingProfile(distance, battery), (TrackingProfile{accuracy, activity, filter}))
          << distance << ", battery " << static_cast<int>(battery);
    }
  }
}

TEST_F(Tracking, AdaptsToTheDistanceAndTheBattery) {
  start();
  constexpr auto kFar = ActivityType::automotiveNavigation;
  const std::tuple<double, BatteryState, TrackingProfile> rows[] = {
      {5000, BatteryState::unplugged, {LocationAccuracy::best, kFar, 400}},
      {5500, BatteryState::charging, {LocationAccuracy::best, kFar, 200}},
      {400,
       BatteryState::full,
       {LocationAccuracy::bestForNavigation, ActivityType::otherNavigation, 30}}};
  for (const auto& [metres, battery, expected] : rows) {
    device->setBatteryState(battery);
    Ovinta::stopLocationUpdates();
    fetchOrders({orderAtZero()});
    location->deliver(at(metres));
    advance(3s);
    EXPECT_EQ((TrackingProfile{location->desiredAccuracy().value(), location->activityType(),
                               location->distanceFilter()}),
              expected);
  }
}

TEST_F(Tracking, MeasuresToTheNearestSiteWithNumbersForCoordinates) {
  const auto site = [](platform::Value latitude, platform::Value longitude) {
    return with(requiredOrder(), {{"site_latitude", latitude}, {"site_longitude", longitude}});
  };
  const platform::Dictionary unusable[] = {requiredOrder(), site("0.0", nullptr),
                                           site("0.0", "0.0 E")};
  start();
  double metres = 0;
  for (const auto& order : unusable) {
    fetchOrders({order});
    location->deliver(at(metres += 10));
    advance(3s);
    EXPECT_EQ(location->desiredAccuracy(), LocationAccuracy::best);
    EXPECT_EQ(location->distanceFilter(), 3);
    EXPECT_EQ(location->activityType(), ActivityType::other);
  }
  fetchOrders(
      {site("100.0", "0.0"), site("1.0", "1.0"), unusable[1], orderAtZero(), site("2.0", "2.0")});
  advance(1s);
  location->deliver(at(600));
  advance(2s);
  EXPECT_EQ(location->distanceFilter(), 200);
}

}  // namespace
}  // namespace ovinta::test
