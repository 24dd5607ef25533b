#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "platform/simulation/http/HoldingURLSession.h"
#include "platform/simulation/trip/TripPlayer.h"
#include "tests/platform/simulation/Sphere.h"

namespace ovinta::platform::simulation {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string gpx(const std::string& content) {
  return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" xmlns:t=\"urn:ovinta:trip\" "
         "xmlns:x=\"urn:other\">\n" +
         content + "\n</gpx>";
}

std::string track(const std::string& points) {
  return gpx("<trk><trkseg>\n" + points + "\n</trkseg></trk>");
}

Trip read(const std::string& text) {
  auto reading = Trip::fromGPXText(text);
  if (const auto* error = std::get_if<std::string>(&reading)) ADD_FAILURE() << *error;
  return std::holds_alternative<Trip>(reading) ? std::get<Trip>(std::move(reading)) : Trip{};
}

TEST(GPXTest, ReadsTimesAccuraciesAndSpeeds) {
  const auto trip = read(track(
      R"(<trkpt lat="40" lon="-73.5"><time>2026-03-14T15:00:00Z</time><hdop>2</hdop></trkpt>
         <trkpt lat="40" lon="-73.4"><time>2026-03-14T16:00:00.5+01:00</time><speed>7</speed>
           <extensions><t:accuracy>9</t:accuracy><x:accuracy>1</x:accuracy></extensions></trkpt>
         </trkseg><trkseg><trkpt lat=" 41 " lon="-73.3"><time> 2026-03-14T15:00:02 </time>
           <extensions><x:more><x:speed>3.5</x:speed></x:more></extensions></trkpt>)"));
  EXPECT_EQ(trip.start, kDefaultTripStart);
  std::vector<std::tuple<TimeInterval, Coordinate, double, double>> points;
  for (const auto& point : trip.points) {
    points.emplace_back(point.offset, point.coordinate, point.speed, point.accuracy);
  }
  EXPECT_THAT(points, ElementsAre(std::tuple(0s, Coordinate{40, -73.5}, -1, 10),
                                  std::tuple(500ms, Coordinate{40, -73.4}, 7, 9),
                                  std::tuple(2s, Coordinate{41, -73.3}, 3.5, 5)));
}

TEST(GPXTest, DerivesMissingTimesFromTheSpeed) {
  // A hundredth of a degree of latitude is 1112 m.
  const auto trip = read(gpx(R"(<rte><rtept lat="10" lon="5"><speed>10</speed></rtept>
      <rtept lat="10.01" lon="5"/><rtept lat="10.02" lon="5"><speed>20</speed></rtept></rte>)"));
  ASSERT_EQ(trip.points.size(), 3u);
  EXPECT_NEAR(std::chrono::duration<double>(trip.points[1].offset).count(), 111.2, 0.1);
  EXPECT_NEAR(std::chrono::duration<double>(trip.points[2].offset).count(), 166.8, 0.1);
}

TEST(GPXTest, ReadsWhatHappensOnTheWay) {
  const auto trip = read(gpx(
      R"(<metadata><extensions><t:permission after="1.5" status="2"/></extensions></metadata>
         <rte><rtept lat="1" lon="2"/></rte>
         <extensions><x:beacon/><t:battery after="3" state="charging"/><t:tunnel from="2" to="4"/>
           <t:beacon uuid="5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01" major="42" minor="65535" lat="1"
                     lon="2" range="30"/></extensions>)"));
  ASSERT_EQ(trip.permissionChanges.size(), 1u);
  EXPECT_EQ(trip.permissionChanges[0].offset, 1500ms);
  EXPECT_EQ(trip.permissionChanges[0].status, 2);
  ASSERT_EQ(trip.batteryChanges.size(), 1u);
  EXPECT_EQ(trip.batteryChanges[0].state, BatteryState::charging);
  ASSERT_EQ(trip.tunnels.size(), 1u);
  EXPECT_EQ(trip.tunnels[0].from, 2s);
  EXPECT_EQ(trip.tunnels[0].to, 4s);
  ASSERT_EQ(trip.beacons.size(), 1u);
  EXPECT_EQ(trip.beacons[0].minor, 65'535);
  EXPECT_EQ(trip.beacons[0].range, 30);
  EXPECT_EQ(trip.beacons[0].measuredPower, TripBeacon{}.measuredPower);
}

TEST(GPXTest, SaysWhatIsWrongAndWhere) {
  const std::string first = R"(<trkpt lat="1" lon="1"><time>2026-03-14T15:00:00Z</time></trkpt>)";
  const auto timed = [&](const std::string& time) {
    return track(first + "\n<trkpt lat=\"1\" lon=\"1\"><time>" + time + "</time></trkpt>");
  };
  const auto extended = [&](const std::string& element) {
    return gpx("<rte><rtept lat=\"1\" lon=\"1\"/></rte>\n<extensions>" + element + "</extensions>");
  };
  std::string manyAttributes;
  for (int i = 0; i <= 100; ++i) manyAttributes += " a" + std::to_string(i) + "=''";
  const std::pair<std::string, std::string> kCases[] = {
      {"", "No document element found"},
      {"<gpx>\n<trk></gpx>", "line 2: Start-end tags mismatch"},
      {"<kml/>", "line 1: the outermost element is not gpx"},
      {gpx("<wpt lat='1' lon='1'/>"), "there are no track or route points"},
      {track("<trkpt lon='1'/>"), "line 4: lat is missing"},
      {track("<trkpt lat='1,5' lon='1'/>"), "line 4: lat is no number: \"1,5\""},
      {track("<trkpt lat='nan' lon='1'/>"), "lat is no number"},
      {track("<trkpt lat='90.1' lon='1'/>"), "lat is out of range: 90.1"},
      {track(first + "<trkpt lat='1' lon='1'><hdop>-1</hdop></trkpt>"), "hdop is out of range"},
      {track(first + "<trkpt lat='1' lon='1'/>"), "neither a time nor a speed"},
      {track("<trkpt lat='1' lon='1'><speed>1e-300</speed></trkpt><trkpt lat='2' lon='1'/>"),
       "line 4: a point takes longer to reach than any trip"},
      {track("<trkpt lat='1' lon='1'/>" + first), "a time needs one at the first point"},
      {timed("2026-03-14T14:59:59Z"), "line 5: time goes back"},
      {timed("2026-02-30T15:00:00Z"), "time is no ISO 8601 instant"},
      {timed("2026-03-14T24:00:00Z"), "time is no ISO 8601 instant"},
      {timed("2026-03-14T15:00:00+1:00"), "time is no ISO 8601 instant"},
      {timed("2026-03-14T15:00:00+24:00"), "time is no ISO 8601 instant"},
      // Digits that stand where no digit is awaited.
      {timed("00.5+01:00"), "time is no ISO 8601 instant: \"00.5+01:00\""},
      {timed("2026-03-14T15:00:0.5"), "time is no ISO 8601 instant"},
      {timed("2027-03-16T15:00:00Z"), "line 5: the trip is longer than a year"},
      {extended("<t:beacon uuid='5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01' major='1' minor='1' lat='1'"
                " lon='1' noise='1e308'/>"),
       "noise is out of range"},
      {extended("<t:beacon uuid='x' major='1' minor='1' lat='1' lon='1'/>"), "no UUID"},
      {extended("<t:battery after='1' state='empty'/>"), "no battery state: \"empty\""},
      {extended("<t:permission status='1'/>"), "line 4: after is missing"},
      {extended("<t:tunnel from='5' to='5'/>"), "line 4: a tunnel ends where it begins or before"},
      {extended("<t:tunnel from='5'/>"), "line 4: to is missing"},
      {extended("<t:battery" + manyAttributes + "/>"), "line 4: too many attributes"},
      {extended("<t:permision after='1' status='1'/>"), "unknown element t:permision"},
  };
  for (const auto& [text, message] : kCases) {
    const auto reading = Trip::fromGPXText(text);
    const auto* error = std::get_if<std::string>(&reading);
    ASSERT_NE(error, nullptr) << text;
    EXPECT_THAT(*error, HasSubstr(message));
  }
  const std::pair<const char*, const char*> kFiles[] = {
      {"/no/such.gpx", "/no/such.gpx: the file cannot be read"},
      {"/", "/: the file cannot be read"},
      {"/dev/null", "/dev/null: line 1: No document element found"},
      {"/dev/zero", "/dev/zero: the file is larger than 64 MiB"},
  };
  for (const auto& [file, message] : kFiles) {
    EXPECT_EQ(std::get<std::string>(Trip::fromGPX(file)), message);
  }
}

/// A device on a trip whose positions are recorded.
class Journey : public LocationManagerDelegate {
 public:
  Journey(const Trip& trip, std::uint64_t seed) : player(simulation, trip, seed) {
    manager->setDelegate(this);
    manager->startUpdatingLocation();
    simulation.device().setBatteryMonitoringEnabled(true);
    player.start();
    player.start();
  }

  void didUpdateLocations(const std::vector<Location>& fixes) override {
    locations.insert(locations.end(), fixes.begin(), fixes.end());
  }
  void didChangeAuthorizationStatus(AuthorizationStatus) override {}
  void didRangeBeacons(const std::vector<RangedBeacon>& beacons,
                       const IdentifiedBeaconRegion&) override {
    for (const auto& beacon : beacons) strengths.push_back(beacon.rssi);
  }

  Simulation simulation{sphericalServices(), kDefaultTripStart};
  std::unique_ptr<LocationManager> manager = simulation.location().makeLocationManager();
  TripPlayer player;
  std::vector<Location> locations;
  std::vector<std::int64_t> strengths;
};

TEST(TripPlayerTest, MovesEvenlyOnceASecondAndEndsWithTheLastEvent) {
  Trip trip;
  trip.points = {{.offset = 0s, .coordinate = northOfSite(30), .accuracy = 0},
                 {.offset = 2500ms, .coordinate = northOfSite(5), .accuracy = 0}};
  trip.permissionChanges = {{.offset = 3s, .status = 2}};
  trip.batteryChanges = {{.offset = 1s, .state = BatteryState::full}};
  Journey journey(trip, 1);
  EXPECT_FALSE(journey.player.position().has_value());
  journey.simulation.time().advance(2s);
  ASSERT_EQ(journey.locations.size(), 3u);
  const std::pair<int, double> kExpected[] = {{0, 30}, {1, 20}, {2, 10}};
  for (const auto& [second, metres] : kExpected) {
    const auto& fix = journey.locations.at(second);
    EXPECT_NEAR(Sphere().distance(kSite, fix.coordinate), metres, 0.01);
    EXPECT_NEAR(fix.speed, 10, 0.01);
    EXPECT_EQ(fix.timestamp, kDefaultTripStart + std::chrono::seconds(second));
  }
  EXPECT_EQ(journey.player.position(), journey.locations.back().coordinate);
  EXPECT_NEAR(journey.player.distanceAlong(), 20, 0.01);
  EXPECT_EQ(journey.simulation.device().batteryState(), BatteryState::full);
  EXPECT_FALSE(journey.player.isFinished());

  journey.simulation.time().advance(1s);
  EXPECT_TRUE(journey.player.isFinished());
  EXPECT_EQ(journey.player.duration(), 3s);
  EXPECT_EQ(journey.simulation.location().authorizationStatus(), 2);
  EXPECT_EQ(journey.locations.size(), 3u) << "the permission is gone";
  EXPECT_NEAR(journey.player.distanceAlong(), 25, 0.01);
  EXPECT_EQ(journey.simulation.time().pendingTaskCount(), 0u);
}

TEST(TripPlayerTest, LosesTheServiceInTunnels) {
  const auto services = std::make_shared<HoldingURLSession>();
  Simulation simulation(sphericalServices(), kDefaultTripStart, {.urlSession = services});
  std::vector<bool> changes;
  simulation.network().start([&](bool isAvailable) { changes.push_back(isAvailable); });
  // The first two overlap, the third goes on beyond the end.
  TripPlayer player(simulation,
                    Trip::along({northOfSite(50), kSite}, 10, {{1s, 3s}, {2s, 4s}, {5s, 7s}}), 1);
  std::vector<std::string> answers;
  const auto ask = [&] {
    simulation.services().urlSession->startDataTask(
        {}, [&](const auto& data, const auto&, const auto& error) {
          answers.push_back(data ? *data : error->localizedDescription);
        });
  };
  player.start();
  std::string available;
  for (int second = 0; second < 8; ++second) {
    available += simulation.network().isAvailable() ? "+" : "-";
    ask();
    if (second == 0) ask();
    if (second == 1) services->answer(0, Answer::json(200, "late"));
    if (second == 4) services->answer(1, Answer::json(200, "after the tunnel"));
    simulation.time().advance(1s);
  }
  EXPECT_EQ(available, "+---+--+");
  EXPECT_EQ(changes, (std::vector{true, false, true, false, true}));
  EXPECT_TRUE(player.isFinished());
  const std::string none = Answer::noConnection().error->localizedDescription;
  EXPECT_THAT(answers, ElementsAre(Answer::lostConnection().error->localizedDescription, none, none,
                                   none, "after the tunnel", none, none));
}

TEST(TripPlayerTest, TakesTheLastOfTwoPointsOfOneInstant) {
  const auto point = [](const char* latitude, const char* second) {
    return std::string("<trkpt lat='") + latitude + "' lon='0'><time>2026-03-14T15:00:" + second +
           "Z</time><hdop>0</hdop></trkpt>";
  };
  Journey journey(read(track(point("1", "00") + point("2", "00") + point("3", "01") +
                             point("4", "01") + point("5", "02") + point("6", "02"))),
                  1);
  journey.simulation.time().advance(2s);
  std::vector<double> latitudes;
  for (const auto& fix : journey.locations) latitudes.push_back(fix.coordinate.latitude);
  EXPECT_THAT(latitudes, ElementsAre(2, 4, 6));

  // Before the first of them, too, the device is somewhere.
  Trip late;
  late.points = {{1s, {1, 0}, -1, 0}, {1s, {2, 0}, -1, 0}};
  Journey waiting(late, 1);
  waiting.simulation.time().advance(0s);
  EXPECT_EQ(waiting.player.position(), (Coordinate{1, 0}));
}

TEST(TripPlayerTest, CrossesTheDateLineTheShortWay) {
  Trip trip;
  trip.points = {{0s, {0, 179.999}, -1, 0}, {2s, {0, -179.999}, -1, 0}};
  Journey journey(trip, 1);
  journey.simulation.time().advance(1s);
  EXPECT_NEAR(std::abs(journey.locations.at(1).coordinate.longitude), 180, 1e-9);
}

TEST(TripPlayerTest, NoiseFollowsTheSeedAndTheAccuracy) {
  Trip trip;
  trip.points = {{.offset = 0s, .coordinate = kSite, .accuracy = 10},
                 {.offset = 24h, .coordinate = kSite, .accuracy = 10}};
  trip.beacons = {{.coordinate = northOfSite(10)}, {.coordinate = northOfSite(50)}};
  const auto play = [&](std::uint64_t seed, std::chrono::minutes duration) {
    auto journey = std::make_unique<Journey>(trip, seed);
    journey->manager->startRangingBeacons({});
    journey->simulation.time().advance(duration);
    return journey;
  };
  const auto first = play(7, 5min);
  const auto same = play(7, 5min);
  EXPECT_EQ(first->locations, same->locations);
  EXPECT_EQ(first->strengths, same->strengths);
  EXPECT_NE(first->locations, play(8, 5min)->locations);

  // Two of three within the accuracy in the long run.
  const auto journey = play(7, 6h);
  const auto within = std::ranges::count_if(journey->locations, [](const Location& fix) {
    return Sphere().distance(fix.coordinate, kSite) <= 10;
  });
  const auto count = static_cast<double>(journey->locations.size());
  EXPECT_NEAR(static_cast<double>(within) / count, 2.0 / 3, 0.05);
  // At 10 m the strength is 20 dB below that at 1 m; the beacon at 50 m is out of range.
  double sum = 0;
  for (const auto strength : journey->strengths) sum += static_cast<double>(strength);
  EXPECT_EQ(journey->strengths.size(), 6u * 3600);
  EXPECT_NEAR(sum / static_cast<double>(journey->strengths.size()), -79, 0.2);
}

}  // namespace
}  // namespace ovinta::platform::simulation
