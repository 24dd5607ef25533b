// What is sent of the user's position and beacons, and how often.
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta::test {
namespace {

using testing::ElementsAre;

class Reporting : public LocationFixture {
 protected:
  /// Lets time pass in steps of 100 ms, calls `atStep` with the time since the begin before each,
  /// and answers the times at which location updates were sent, to the step.
  std::vector<int> sendTimes(std::chrono::milliseconds until,
                             const std::function<void(int)>& atStep) {
    std::vector<int> times;
    std::size_t sent = eventCount();
    for (int now = 0; now <= until.count(); now += 100) {
      atStep(now);
      drain();
      if (eventCount() > sent) times.push_back(now);
      sent = eventCount();
      time.advance(100ms);
    }
    return times;
  }

  double metres_ = 0;
};

TEST_F(Reporting, WaitsTwoSecondsAfterADeliveryAndMoreThanTwoAfterASend) {
  using Times = std::vector<int>;
  // Milliseconds since the begin: deliveries and sends.
  const std::pair<Times, Times> paces[] = {
      {{0}, {2000}},
      {{0, 400, 800}, {2000}},
      {{0, 400, 800, 2500}, {2000, 4500}},
      {{0, 2000}, {2000}},
      {{0, 2100}, {2000, 4100}},
      {{0, 400, 800, 1200, 1600, 2000, 2400, 2800}, {2000, 4400}}};
  startTracking();
  for (const auto& [deliveries, sends] : paces) {
    EXPECT_EQ(sendTimes(8s,
                        [this, &times = deliveries](int now) {
                          // The filter passes positions 3 m apart.
                          if (std::ranges::count(times, now)) location->deliver(at(metres_ += 10));
                        }),
              sends);
    EXPECT_THAT(happened({Step::posted}), testing::SizeIs(sends.size()));
  }
}

TEST_F(Reporting, SaysWhereTheUserIsForEveryOpenOrder) {
  startTracking({7, 8});
  location->deliver(at(0));
  location->deliver({.coordinate = {41.5, -74.25},
                     .horizontalAccuracy = 6.5,
                     .speed = -1,
                     .timestamp = time.now()});
  advance(3s);
  const std::string rest = R"(,"event_type":"location_update","longitude":-74.25,"latitude":41.5,)"
                           R"("accuracy":6.5,"speed":-1,"beacons":[]}})";
  EXPECT_THAT(bodies("POST", kEvents),
              ElementsAre(R"({"data":{"order_id":7)" + rest, R"({"data":{"order_id":8)" + rest));
  EXPECT_EQ(timesLogged(Line::sendingLocation), 1);
  EXPECT_THAT(happened({Step::posted}),
              are(posted(SDKNotification::locationUpdate, thePosition(41.5, -74.25))));
}

TEST_F(Reporting, TellsOfPositionsOfLessThanThirtySecondsAlone) {
  startTracking();
  // The age at the delivery of a position that is looked at two seconds later.
  for (const platform::TimeInterval age : {28s - 1us, platform::TimeInterval(28s), 29s + 0us}) {
    const std::size_t before = eventCount();
    const std::size_t isSent = age < 28s ? 1 : 0;
    auto old = at(metres_ += 10);
    old.timestamp -= age;
    location->deliver(old);
    happened();
    advance(2s);
    EXPECT_EQ(eventCount() - before, isSent);
    const Item position = thePosition(old.coordinate.latitude, 0);
    EXPECT_THAT(happened({Step::posted}), are(posted(SDKNotification::locationUpdate, position)));
    location->deliver(at(metres_ += 10));
    advance(2s);
    EXPECT_EQ(eventCount() - before, isSent) << "an attempt that sends nothing delays as well";
    advance(5s);
  }
}

TEST_F(Reporting, FollowsAnUpdateOfTheOrdersAtOnce) {
  startTracking();
  location->deliver(at(0));
  advance(2s);
  ASSERT_EQ(eventCount(), 1u);
  happened();
  fetchOrders({orderAtZero(8)});
  EXPECT_EQ(eventCount(), 2u);
  EXPECT_THAT(happened({Step::posted}),
              are(posted(SDKNotification::ordersUpdated, theOrders({8}))));
  EXPECT_EQ(location->desiredAccuracy(), platform::LocationAccuracy::bestForNavigation);
  location->deliver(at(10));
  advance(2s);
  EXPECT_EQ(eventCount(), 2u) << "exactly two seconds later";
}

TEST_F(Reporting, SendsNothingWithoutACustomerOrABaseURL) {
  const auto expectNone = [this] {
    location->deliver(at(metres_ += 10));
    advance(5s);
    EXPECT_EQ(eventCount(), 0u);
  };
  startTracking();
  UserDefaultsKey::apiBase.remove();
  expectNone();
  UserDefaultsKey::apiBase.set(std::string(kBaseURL));
  Ovinta::customer().setCurrent(nullptr);
  expectNone();
  EXPECT_EQ(timesLogged(Line::sendingLocation), 2);
  signIn();
  Ovinta::orders().setOpen(std::nullopt);
  expectNone();
  EXPECT_EQ(timesLogged(Line::sendingLocation), 2);
  Ovinta::orders().setOpen(OrderList{});
  expectNone();
  EXPECT_EQ(timesLogged(Line::sendingLocation), 3);
}

TEST_F(Reporting, SendsForBeaconsOnceMoreThanFiveSecondsHavePassed) {
  start();
  fetchOrders({orderWithRegions(7, {region()})});
  happened();
  location->setBeaconsInRange({sighting(-60, 1.5)});
  // Heard at 1000, and then every second. The position's own check, at 2000, comes too soon.
  EXPECT_THAT(sendTimes(14s,
                        [this](int now) {
                          if (now == 0) location->deliver(at(0));
                        }),
              ElementsAre(1000, 7000, 13000));
  EXPECT_THAT(happened({Step::posted}), are());
  EXPECT_THAT(bodies("POST", kEvents).back(),
              testing::EndsWith(std::string(R"("beacons":[{"rssi":-60,"distance":1.5,"uuid":")") +
                                kUUID + R"(","major":1,"minor":2}]}})"));
  location->setBeaconsInRange({});
  EXPECT_THAT(sendTimes(20s, [](int) {}), ElementsAre(4900, 10900))
      << "still heard, and once more when they have fallen silent";
  EXPECT_THAT(bodies("POST", kEvents).back(), testing::EndsWith(R"("beacons":[]}})"));
}

}  // namespace
}  // namespace ovinta::test
