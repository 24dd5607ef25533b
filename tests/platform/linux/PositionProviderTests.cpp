#include "platform/linux/diagnosis/DiagnosisRun.h"
#include "platform/linux/location/gpsd/GpsdProvider.h"
#include "platform/linux/location/portal/PortalProvider.h"
#include "replay/LineServer.h"
#include "tests/platform/linux/PositionFixture.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using simulation::northOfSite;
using test::ServiceDouble;
using testing::ElementsAre;

TEST(PositionSourceTest, ASandboxHasThePortalUnlessToldOtherwise) {
  const test::TemporaryDirectory folder;
  const auto mark = folder.path() / "mark";
  EXPECT_EQ(chosenSource(PositionSource::automatic, mark), PositionSource::geoclue);
  EXPECT_EQ(chosenSource(PositionSource::automatic, folder.path()), PositionSource::portal);
  EXPECT_EQ(chosenSource(PositionSource::gpsd, folder.path()), PositionSource::gpsd);
}

class PortalTest : public PositionTest {
 protected:
  static constexpr const char* kRequest = "org.freedesktop.portal.Request";
  static constexpr const char* kSession = "org.freedesktop.portal.Session";

  PortalTest() { portal_.addObject(kPortalPath, kPortalLocation, {{"version", dbus::write(1U)}}); }

  ServiceDouble::Answer answer(const ServiceDouble::Call& call) {
    if (call.method == "CreateSession") {
      if (isSlow_) return ServiceDouble::NoAnswer{};
      const auto options = dbus::read<dbus::Properties>(call.arguments, 0).value();
      thresholds_.push_back(dbus::read<std::uint32_t>(options, "distance-threshold").value());
      session_ = "/session/" + dbus::read<std::string>(options, "session_handle_token").value();
      portal_.addObject(session_, kSession);
      return dbus::arguments(dbus::ObjectPath(session_));
    }
    if (call.method == "Close") {
      closed_.push_back(call.object);
      return dbus::Variant();
    }
    return start(call);
  }

  ServiceDouble::Answer start(const ServiceDouble::Call& call) {
    const auto options = dbus::read<dbus::Properties>(call.arguments, 2).value();
    const std::string request =
        "/request/" + dbus::read<std::string>(options, "handle_token").value();
    portal_.emit("/request/other", kRequest, "Response", dbus::arguments(1U, dbus::Properties()),
                 call.sender);
    // It is gone with its answer.
    if (!response_) {
      portal_.addObject(request, kRequest);
    } else {
      portal_.emit(request, kRequest, "Response", dbus::arguments(*response_, dbus::Properties()),
                   call.sender);
    }
    return dbus::arguments(dbus::ObjectPath(request));
  }

  void feed(const std::string& session, double latitude) {
    portal_.emit(kPortalPath, kPortalLocation, "LocationUpdated",
                 dbus::arguments(dbus::ObjectPath(session),
                                 dbus::Properties{{"Latitude", dbus::write(latitude)},
                                                  {"Longitude", dbus::write(2.0)},
                                                  {"Accuracy", dbus::write(0.0)}}));
  }

  /// For the double's thread.
  /// None while the user is being asked.
  std::optional<std::uint32_t> response_ = 0;
  bool isSlow_ = false;
  std::vector<std::string> closed_;
  std::string session_;
  std::vector<std::uint32_t> thresholds_;
  ServiceDouble portal_{daemon_,
                        kPortalName,
                        {{"CreateSession", "a{sv}"}, {"Start", "osa{sv}"}, {"Close", ""}},
                        [this](const auto& call) { return answer(call); }};
  std::shared_ptr<PortalProvider> provider_ =
      std::make_shared<PortalProvider>(bus_, time_.mainQueue());
};

TEST_F(PortalTest, FollowsThePositionInASessionForEachFilter) {
  auto stream = open(*provider_, 30);
  waitForAccess(PositionAccess::granted);
  feed("/session/other", 9);
  portal_.sync([&] { feed(session_, 1); });
  waitUntil([&] { return locations_.size() == 1; });
  EXPECT_EQ(locations_[0], (Location{{1, 2}, kBestAccuracyMetres}));
  stream->setDistanceFilter(30);
  stream->setDistanceFilter(400);
  waitForAccess(PositionAccess::granted);
  stream = nullptr;
  waitUntil([&] { return portal_.count("Close") == 2; });
  EXPECT_THAT(thresholds_, ElementsAre(30U, 400U));
}

TEST_F(PortalTest, ARefusalStandsAndASessionThatEndsIsMadeAnew) {
  portal_.sync([this] { response_ = 1; });
  auto stream = open(*provider_, 0);
  waitForAccess(PositionAccess::denied);
  expectNoTimer();
  portal_.sync([this] { response_ = 0; });
  stream = open(*provider_, 0);
  waitForAccess(PositionAccess::granted);
  portal_.sync(
      [&] { portal_.emit(session_, kSession, "Closed", dbus::arguments(dbus::Properties())); });
  waitForAccess(PositionAccess::undecided);
  time_.advance(15s);
  waitForAccess(PositionAccess::granted);
  portal_.vanish();
  waitForAccess(PositionAccess::absent);
  portal_.sync([this] { response_.reset(); });
  portal_.appear();
  time_.advance(15s);
  // One that leaves while the user is asked is asked again.
  waitUntil([&] { return portal_.count("Start") == 4; });
  portal_.vanish();
  waitForAccess(PositionAccess::absent);
  portal_.sync([this] { response_ = 0; });
  portal_.appear();
  waitForAccess(PositionAccess::granted);
}

TEST_F(PortalTest, ARefusalAfterAFailureStandsToo) {
  portal_.vanish();
  portal_.sync([this] { response_ = 2; });
  const auto stream = open(*provider_, 0);
  waitForAccess(PositionAccess::absent);
  portal_.appear();
  waitForAccess(PositionAccess::absent);
  portal_.sync([this] { response_ = 1; });
  portal_.vanish();
  portal_.appear();
  waitForAccess(PositionAccess::denied);
  time_.advance(1min);
  passBy(kPortalName);
  EXPECT_EQ(portal_.count("CreateSession"), 2U);
}

TEST_F(PortalTest, AStopLeavesNeitherSessionNorQuestionBehind) {
  portal_.sync([this] { response_.reset(); });
  auto stream = open(*provider_, 0);
  waitUntil([&] { return portal_.count("Start") == 1; });
  stream = nullptr;
  waitUntil([&] { return portal_.count("Close") == 2; });

  portal_.sync([this] { isSlow_ = true; });
  stream = open(*provider_, 0);
  waitUntil([&] { return portal_.count("CreateSession") == 2; });
  stream = nullptr;
  portal_.sync([this] { isSlow_ = false; });
  portal_.answerLate();
  waitUntil([&] { return portal_.count("Close") == 3; });
  EXPECT_EQ(closed_.back(), session_);
  EXPECT_EQ(portal_.count("Start"), 1U);
}

TEST_F(PortalTest, WithoutTheInterfaceForLocationItIsNotThereAndTheLogTellsOnce) {
  portal_.removeObject(kPortalPath);
  auto stream = open(*provider_, 0);
  waitForAccess(PositionAccess::absent);
  stream = open(*provider_, 0);
  waitForAccess(PositionAccess::absent);
  expectNoTimer();
  EXPECT_THAT(log_->lines(),
              ElementsAre(testing::EndsWith("has no org.freedesktop.portal.Location")));
}

TEST_F(PortalTest, ADiagnosisTellsOfItAndLeavesNoSession) {
  Surroundings around;
  around.mainQueue = time_.mainQueue();
  around.systemBus = around.sessionBus = bus_;
  around.positionSource = PositionSource::portal;
  around.positionProvider = provider_;
  for (const char* expected : {"position 1: the location portal", "position permission: refused"}) {
    std::vector<std::string> told;
    const auto note = [&](const auto& findings) {
      for (const Finding& one : findings) {
        const std::string version = one.version.empty() ? "" : " " + one.version;
        told.push_back(one.subject + version + ": " + one.detail);
      }
    };
    std::make_shared<DiagnosisRun>(around, note)->begin();
    waitUntil([&] { return !told.empty(); });
    EXPECT_THAT(told, testing::Contains(expected));
    portal_.sync([this] { response_ = 1; });
  }
  waitUntil([&] { return portal_.count("Close") == 2; });
}

TEST_F(PositionTest, GpsdTellsItsFixesAndIsConnectedToAgain) {
  using boost::asio::ip::tcp;
  replay::LineServer<tcp> gpsd({boost::asio::ip::address_v4::loopback(), 0});
  GpsdProvider provider(
      time_.mainQueue(), std::make_shared<simulation::Sphere>(),
      {.host = "127.0.0.1", .port = std::to_string(gpsd.endpoint().port()), .log = log_});
  const auto stream = open(provider, 100);
  waitForAccess(PositionAccess::grantedAlways);
  ASSERT_TRUE(gpsd.hasListener(10s));
  const auto report = [](int mode, double metresNorth, const std::string& more) {
    const Coordinate at = northOfSite(metresNorth);
    return R"({"class":"TPV","mode":)" + std::to_string(mode) + R"(,"lat":)" +
           std::to_string(at.latitude) + R"(,"lon":)" + std::to_string(at.longitude) + more + "}\n";
  };
  gpsd.say(R"({"class":"VERSION","release":"3.22","proto_major":3,"proto_minor":14})"
           "\n" +
           report(1, 0, "") +
           report(3, 0, R"(,"time":"2023-11-14T22:13:20.500Z","eph":1.5,"speed":2.5)") +
           report(2, 50, "") + report(2, 150, "") + report(3, 150, R"(,"eph":30)"));
  waitUntil([&] { return locations_.size() == 3; });
  EXPECT_EQ(locations_[0].horizontalAccuracy, kBestAccuracyMetres);
  EXPECT_EQ(locations_[0].speed, 2.5);
  EXPECT_EQ(locations_[0].timestamp, Date(1'700'000'000s + 500ms));
  EXPECT_NEAR(locations_[0].coordinate.latitude, simulation::kSite.latitude, 1e-6);
  EXPECT_EQ(locations_[1].horizontalAccuracy, 100);
  EXPECT_LT(locations_[1].speed, 0);
  EXPECT_EQ(locations_[2].horizontalAccuracy, 30) << "no further, but known better";

  gpsd.hangUp();
  waitForAccess(PositionAccess::absent);
  stream->setDistanceFilter(0);
  time_.advance(15s);
  waitForAccess(PositionAccess::grantedAlways);
  ASSERT_TRUE(gpsd.hasListener(10s));
  // Half a line is waited for, and what a line does not tell is not told again.
  const std::string fix = report(3, 150, "");
  gpsd.say(fix +
           R"({"class":"SKY","device":"tests"})"
           "\n" +
           fix.substr(0, 30));
  waitUntil([&] { return locations_.size() == 4; });
  gpsd.say(fix.substr(30));
  waitUntil([&] { return locations_.size() == 5; });
  gpsd.say(fix.substr(0, 30));
  gpsd.hangUp();
  waitForAccess(PositionAccess::absent);
  waitUntil([&] { return time_.pendingTaskCount() == 1; });

  // Whoever sends without an end is no gpsd.
  time_.advance(15s);
  waitForAccess(PositionAccess::grantedAlways);
  ASSERT_TRUE(gpsd.hasListener(10s));
  gpsd.say(std::string(80'000, ' '));
  waitForAccess(PositionAccess::absent);
  waitUntil([&] { return time_.pendingTaskCount() == 1; });
  EXPECT_EQ(locations_.size(), 5U);
  EXPECT_THAT(log_->lines(),
              ElementsAre(testing::StartsWith("No connection to gpsd at 127.0.0.1:")));
}

}  // namespace
}  // namespace ovinta::platform::linuxos
