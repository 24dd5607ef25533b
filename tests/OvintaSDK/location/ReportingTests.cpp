// What is sent of the user's position and beacons, and how often.
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kUUID = "2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6";

class Reporting : public LocationFixture {
 protected:
  /// Lets time pass in steps of 100 ms, calls `atStep` with the time since the begin before each,
  /// and answers the times at which location updates were sent, to the step.
  std::vector<int> sendTimes(milliseconds until, const std::function<void(int)>& atStep) {
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

  static platform::RangedBeacon beacon(std::int64_t rssi, double accuracy) {
    return {.proximityUUID = platform::UUID::parse(kUUID).value(),
            .major = 1,
            .minor = 2,
            .rssi = rssi,
            .accuracy = accuracy};
  }

  void startTrackingWithBeacons() {
    start();
    fetchOrders({with(requiredOrder(), {{"site_beacon_regions",
                                         platform::List{platform::Dictionary{{"uuid", kUUID}}}}})});
    forgetNotifications();
  }
};

/// Milliseconds since the begin.
struct Pace {
  std::vector<int> deliveries;
  std::vector<int> sends;
};

void PrintTo(const Pace& pace, std::ostream* out) {
  *out << testing::PrintToString(pace.deliveries);
}

class ReportingPace : public Reporting, public testing::WithParamInterface<Pace> {};

TEST_P(ReportingPace, WaitsTwoSecondsAfterADeliveryAndMoreThanTwoAfterASend) {
  const auto& deliveries = GetParam().deliveries;
  const auto& sends = GetParam().sends;
  startTracking();
  EXPECT_EQ(sendTimes(8s,
                      [this, &deliveries](int now) {
                        // The filter passes positions 3 m apart.
                        if (std::ranges::count(deliveries, now)) location->deliver(at(now));
                      }),
            sends);
  EXPECT_EQ(posted(SDKNotification::locationUpdate).size(), sends.size());
}

INSTANTIATE_TEST_SUITE_P(, ReportingPace,
                         testing::Values(Pace{{0}, {2000}}, Pace{{0, 400, 800}, {2000}},
                                         Pace{{0, 400, 800, 2500}, {2000, 4500}},
                                         Pace{{0, 2000}, {2000}}, Pace{{0, 2100}, {2000, 4100}},
                                         Pace{{0, 400, 800, 1200, 1600, 2000, 2400, 2800},
                                              {2000, 4400}}));

TEST_F(Reporting, SaysWhereTheUserIsForEveryOpenOrder) {
  startTracking({7, 8});
  location->deliver({.coordinate = {40.7, -74.0},
                     .horizontalAccuracy = 12.5,
                     .speed = -1,
                     .timestamp = time.now()});
  location->deliver({.coordinate = {41.5, -74.25},
                     .horizontalAccuracy = 6.5,
                     .speed = -1,
                     .timestamp = time.now()});
  advance(3s);
  const auto expected = [](const char* id) {
    return std::string(R"({"data":{"order_id":)") + id +
           R"(,"event_type":"location_update","longitude":-74.25,"latitude":41.5,)"
           R"("accuracy":6.5,"speed":-1,"beacons":[]}})";
  };
  EXPECT_THAT(bodies("POST", kEvents), ElementsAre(expected("7"), expected("8")));
  EXPECT_EQ(logged("sending location update"), 1);
  ASSERT_THAT(postedNames(), ElementsAre("locationUpdate"));
  const auto announced = posted(SDKNotification::locationUpdate);
  ASSERT_NE(announced[0].objectAs<platform::Location>(), nullptr);
  EXPECT_EQ(announced[0].objectAs<platform::Location>()->coordinate,
            (platform::Coordinate{41.5, -74.25}));
}

/// The age at the delivery of a position that is looked at two seconds later.
class ReportingAge : public Reporting,
                     public testing::WithParamInterface<platform::TimeInterval> {};

TEST_P(ReportingAge, MustBeLessThanThirtySeconds) {
  const bool isSent = GetParam() < 28s;
  startTracking();
  auto old = at(0);
  old.timestamp -= GetParam();
  location->deliver(old);
  advance(2s);
  EXPECT_EQ(eventCount(), isSent);
  EXPECT_EQ(posted(SDKNotification::locationUpdate).size(), 1u);

  location->deliver(at(10));
  advance(2s);
  EXPECT_EQ(eventCount(), isSent) << "an attempt that sends nothing delays the next as well";
}

INSTANTIATE_TEST_SUITE_P(, ReportingAge, testing::Values(28s - 1us, 28s, 29s));

TEST_F(Reporting, FollowsAnUpdateOfTheOrdersAtOnce) {
  startTracking();
  location->deliver(at(0));
  advance(2s);
  ASSERT_EQ(eventCount(), 1u);
  forgetNotifications();
  fetchOrders({orderAtZero(8)});
  EXPECT_EQ(eventCount(), 2u);
  EXPECT_THAT(postedNames(), ElementsAre("ordersUpdated"));
  EXPECT_EQ(location->desiredAccuracy(), platform::LocationAccuracy::bestForNavigation);
  location->deliver(at(10));
  advance(2s);
  EXPECT_EQ(eventCount(), 2u) << "exactly two seconds later";
}

TEST_F(Reporting, SendsNothingWithoutACustomerOrABaseURL) {
  double metres = 0;
  const auto expectNone = [&] {
    location->deliver(at(metres += 10));
    advance(5s);
    EXPECT_EQ(eventCount(), 0u);
  };
  startTracking();
  UserDefaultsKey::apiBase.remove();
  expectNone();
  UserDefaultsKey::apiBase.set(std::string(test::kBaseURL));
  Ovinta::customer().setCurrent(nullptr);
  expectNone();
  EXPECT_EQ(logged("sending location update"), 2);
  signIn();
  Ovinta::orders().setOpen(std::nullopt);
  expectNone();
  EXPECT_EQ(logged("sending location update"), 2);
  Ovinta::orders().setOpen(OrderList{});
  expectNone();
  EXPECT_EQ(logged("sending location update"), 3);
}

TEST_F(Reporting, SendsForBeaconsOnceMoreThanFiveSecondsHavePassed) {
  startTrackingWithBeacons();
  location->setBeaconsInRange({beacon(-60, 1.5)});
  // Heard at 1000, and then every second. The position's own check, at 2000, comes too soon.
  EXPECT_THAT(sendTimes(14s,
                        [this](int now) {
                          if (now == 0) location->deliver(at(0));
                        }),
              ElementsAre(1000, 7000, 13000));
  EXPECT_THAT(posted(SDKNotification::locationUpdate), IsEmpty());
  EXPECT_THAT(bodies("POST", kEvents).back(),
              testing::EndsWith(std::string(R"("beacons":[{"rssi":-60,"distance":1.5,"uuid":")") +
                                kUUID + R"(","major":1,"minor":2}]}})"));
}

TEST_F(Reporting, SendsOnceMoreWhenTheBeaconsHaveFallenSilent) {
  startTrackingWithBeacons();
  location->setBeaconsInRange({beacon(-60, 1.5)});
  const auto times = sendTimes(20s, [this](int now) {
    if (now == 0) location->deliver(at(0));
    if (now == 1500) location->setBeaconsInRange({});
  });
  EXPECT_THAT(times, ElementsAre(1000, 7000));
  EXPECT_THAT(bodies("POST", kEvents).back(), testing::EndsWith(R"("beacons":[]}})"));
}

TEST_F(Reporting, IgnoresBeaconsOfUnknownDistance) {
  startTrackingWithBeacons();
  location->setBeaconsInRange({beacon(-60, -1)});
  EXPECT_THAT(sendTimes(8s,
                        [this](int now) {
                          if (now == 0) location->deliver(at(0));
                        }),
              ElementsAre(2000));
}

}  // namespace
}  // namespace ovinta
