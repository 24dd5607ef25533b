#include <gmock/gmock.h>

#include <OvintaSDK/OvintaSDK.h>
#include <platform/simulation/testing/AppTestCase.h>

#include <memory>

#include "Pickup.h"

namespace {

using namespace ovinta;
using namespace ovinta::platform::simulation;
using namespace std::chrono_literals;
using platform::List;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr platform::Coordinate kShop{40.7411, -73.9897};
constexpr platform::Coordinate kHome{40.7600, -74.0200};
const char* const kUUID = "2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6";

/// An order at the shop.
platform::Dictionary orderAtShop(std::int64_t id) {
  return sampleOrder(id, {{"site_latitude", "40.7411"}, {"site_longitude", "-73.9897"}});
}

class PickupTest : public AppTestCase {
 protected:
  /// The customer of an earlier day starts the app and finds these orders.
  void open(const List& orders) {
    signIn();
    service().expect("GET /m/v1/orders").answerData(orders);
    app = std::make_unique<Pickup>();
    settle();
  }

  /// Lets the library tell what it does for open orders.
  void allowEvents(std::string_view type) {
    service().allow("POST /m/v1/events").with("event_type", type);
  }

  /// Goes before the case does.
  std::unique_ptr<Pickup> app;
};

TEST_F(PickupTest, AnOrderFromTheFirstLaunchToTheCounter) {
  const auto order = sampleOrder(7, {{"site_latitude", "40.7411"}, {"site_longitude", "-73.9897"}});
  service().expect("POST /m/v1/customer").with("name", "Alex").answerData(sampleCustomer());
  service().expect("POST /m/v1/orders").with("site_id", 42).answerData(order);
  service().expect("POST /m/v1/events").with("event_type", "permission_update");
  service().expect("GET /m/v1/orders").answerData(List{order});
  app = std::make_unique<Pickup>();
  app->order("A-1", "Alex");
  settle();
  EXPECT_THAT(app->lines(), ElementsAre("7: in the making, Created"));

  // On the way the library tells the shop where the customer is.
  service().allow("POST /m/v1/events").with("event_type", "location_update");
  travel(TRIP);
  EXPECT_GT(service().count("POST /m/v1/events"), 10u);

  service().expect("POST /m/v1/events").with("order_id", 7).with("customer_state", "arrived");
  app->arrived(7);
  settle();
  EXPECT_THAT(app->lines(), ElementsAre("7: in the making, Arrived"));
}

TEST_F(PickupTest, ARefusedPermission) {
  location().setAuthorizationStatus(platform::kAuthorizationDenied);
  open({orderAtShop(7)});
  EXPECT_EQ(app->banner(), "Allow location, so that the shop sees you come");

  travel(Trip::along({kHome, kShop}, 12));
  EXPECT_EQ(service().count("POST /m/v1/events"), 0u);
  EXPECT_FALSE(location().isUpdating());
}

TEST_F(PickupTest, APermissionThatIsGivenOnTheWay) {
  location().setAuthorizationStatus(platform::kAuthorizationDenied);
  open({orderAtShop(7)});
  setOff(Trip::along({kHome, kShop}, 12));
  advance(1min);

  service()
      .expect("POST /m/v1/events")
      .with("event_type", "permission_update")
      .with("location_permission", "authorized_when_in_use");
  allowEvents("location_update");
  location().setAuthorizationStatus(platform::kAuthorizedWhenInUse);
  advance(1min);
  EXPECT_GT(service().count("POST /m/v1/events"), 1u);
}

TEST_F(PickupTest, ALostConnection) {
  signIn();
  service().expect("GET /m/v1/orders").after(10s).loseConnection();
  app = std::make_unique<Pickup>();
  advance(9s);
  EXPECT_EQ(app->banner(), "");
  advance(1s);
  EXPECT_EQ(app->banner(), "The network connection was lost.");

  service().expect("GET /m/v1/orders").answerData(List{orderAtShop(7)});
  app->refresh();
  settle();
  EXPECT_EQ(app->banner(), "");
  EXPECT_THAT(app->lines(), SizeIs(1));
}

TEST_F(PickupTest, ATunnel) {
  allowEvents("location_update");
  open({orderAtShop(7)});
  setOff(Trip::along({kHome, kShop}, 12));
  service().setReachable(false);
  advance(1min);
  app->refresh();
  settle();
  EXPECT_EQ(app->banner(), "The network connection was lost.");
  EXPECT_THAT(app->lines(), SizeIs(1));

  service().setReachable(true);
  const auto before = service().count("POST /m/v1/events");
  advance(1min);
  EXPECT_GT(service().count("POST /m/v1/events"), before);
}

TEST_F(PickupTest, ASlowAnswerIsWaitedForOnce) {
  signIn();
  service().expect("GET /m/v1/orders").after(5s).answerData(List{orderAtShop(7)});
  app = std::make_unique<Pickup>();
  advance(1s);
  app->refresh();
  advance(4s);
  EXPECT_THAT(app->lines(), SizeIs(1));
}

TEST_F(PickupTest, APush) {
  open({orderAtShop(7)});
  app->pushed(R"({"order_id": "7", "order_state": "ready"})");
  EXPECT_THAT(app->lines(), ElementsAre("7: ready, Created"));
  EXPECT_THAT(posted(SDKNotification::orderUpdated), SizeIs(1));
}

TEST_F(PickupTest, APushOfAnOrderThatWasMadeElsewhere) {
  open({});
  service().expect("GET /m/v1/orders").answerData(List{orderAtShop(8)});
  app->pushed(R"({"order_id": "8", "order_state": "ready"})");
  settle();
  EXPECT_THAT(app->lines(), ElementsAre("8: in the making, Created"));
}

TEST_F(PickupTest, AGeofence) {
  const auto shop = sampleSite(42, {{"geofence", sampleGeofence(40.7411, -73.9897, 500)}});
  service().expect("GET /m/v1/sites?*").answerPage({shop});
  app = std::make_unique<Pickup>();
  app->remindNear(40.7411, -73.9897);
  settle();
  EXPECT_THAT(notifications().pending(), SizeIs(1));

  travel(Trip::along({{40.76, -74.02}, {40.7411, -73.9897}}, 12));
  ASSERT_THAT(notifications().fired(), SizeIs(1));
  EXPECT_EQ(notifications().fired()[0].content.title, "Nearly there");
}

TEST_F(PickupTest, AReminderOutlivesTheApp) {
  const auto shop = sampleSite(42, {{"geofence", sampleGeofence(40.7411, -73.9897, 500)}});
  service().expect("GET /m/v1/sites?*").answerPage({shop});
  app = std::make_unique<Pickup>();
  app->remindNear(40.7411, -73.9897);
  settle();
  app.reset();
  relaunch();
  travel(Trip::along({kHome, kShop}, 12));
  EXPECT_THAT(notifications().fired(), SizeIs(1));
}

TEST_F(PickupTest, ACustomerIsKnownAfterARestart) {
  open({orderAtShop(7)});
  app.reset();
  relaunch();
  service()
      .expect("GET /m/v1/orders")
      .withHeader("Authorization", "Token token=\"customer-token\"")
      .withHeader("App-Version", "1.0")
      .answerData(List{orderAtShop(7)});
  app = std::make_unique<Pickup>();
  settle();
  EXPECT_THAT(app->lines(), SizeIs(1));
}

TEST_F(PickupTest, SeveralOrdersOnOneWay) {
  allowEvents("location_update");
  open({orderAtShop(7), orderAtShop(8)});
  setOff(Trip::along({kHome, kShop}, 12));
  advance(1min);
  const auto events = service().records("POST /m/v1/events");
  ASSERT_GT(events.size(), 2u);
  EXPECT_EQ(events[0].at("order_id"), platform::Value(7));
  EXPECT_EQ(events[1].at("order_id"), platform::Value(8));

  service().expect("POST /m/v1/events").with("order_id", 8).with("customer_state", "arrived");
  app->arrived(8);
  settle();
  EXPECT_THAT(app->lines(), ElementsAre("7: in the making, Created", "8: in the making, Arrived"));
}

TEST_F(PickupTest, ABeaconAtTheShop) {
  allowEvents("location_update");
  auto order = orderAtShop(7);
  order["site_beacon_regions"] = List{platform::Dictionary{{"uuid", kUUID}}};
  open({order});
  travel(TRIP);
  advance(10s);
  const auto* beacons =
      platform::find<List>(service().records("POST /m/v1/events").back(), "beacons");
  ASSERT_TRUE(beacons);
  EXPECT_THAT(*beacons, SizeIs(1));
}

TEST_F(PickupTest, APhoneThatIsChargedIsFollowedMoreClosely) {
  allowEvents("location_update");
  open({orderAtShop(7)});
  setOff(Trip::along({kHome, kShop}, 12));
  advance(1min);
  const double unplugged = location().distanceFilter();
  device().setBatteryState(platform::BatteryState::charging);
  advance(1min);
  EXPECT_LT(location().distanceFilter(), unplugged);
}

// Whatever the cases before have left, and this one leaves for those after it.
TEST_F(PickupTest, BeginsAfreshAndEndsWithARequestUnderWay) {
  EXPECT_FALSE(Ovinta::customer().current());
  EXPECT_FALSE(Ovinta::orders().all());
  EXPECT_THAT(logLines(), IsEmpty());
  EXPECT_EQ(time().now(), kDefaultTripStart);
  open({orderAtShop(7)});
  service().expect("GET /m/v1/orders").after(1min).loseConnection();
  app->refresh();
  advance(1s);
  setOff(Trip::along({kHome, kShop}, 12));
}

}  // namespace
