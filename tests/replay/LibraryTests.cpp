// The whole library on this system's own services: it follows the real GeoClue on a trip, and tells
// a real service over HTTP.
#include "OvintaSDK/OvintaSDK.h"
#include "OvintaSDK/core/facade/Library.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"
#include "replay/Rig.h"
#include "replay/TripReplay.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using namespace std::chrono_literals;
using platform::Dictionary;
using platform::simulation::northOfSite;
using std::chrono::steady_clock;

constexpr std::int64_t kSiteID = 42;

class LibraryTest : public testing::Test {
 protected:
  LibraryTest() { setenv("no_proxy", "*", 1); }

  void startLibrary(const std::string& systemBus) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus.c_str(), 1);
    platform::Services services = platform::linuxos::makeServices(
        {.applicationID = "tests",
         .dataDirectory = directory_.path(),
         .log = std::make_shared<platform::simulation::RecordingLog>(),
         .usesNotifyAgent = false});
    services.mainBundle = std::make_shared<platform::simulation::SimulatedBundle>(
        platform::simulation::SimulatedBundle::Texts{{"CFBundleShortVersionString", "1.0"}});
    platform::install(std::move(services));
    Library::replaceProcess();
    UserDefaultsKey::apiBase.set(service_.baseURL());
    Ovinta::configure({{"token", "T"}});
  }

  /// Serves the main queue until the condition holds, which is looked at again and again.
  bool waitUntil(const std::function<bool()>& condition) {
    const auto limit = steady_clock::now() + 60s;
    bool holds = false;
    const std::function<void()> look = [&] {
      holds = condition();
      if (holds || steady_clock::now() > limit) return platform::linuxos::quitMainLoop();
      platform::services().mainQueue->asyncAfter(50ms, look);
    };
    look();
    platform::linuxos::runMainLoop();
    return holds;
  }

  /// Metres from the site to the positions that the service was told, oldest first.
  std::vector<double> toldDistances() {
    std::vector<double> distances;
    const auto requests = speaker_.send("GET", "/sandbox/requests");
    for (const platform::Value& request : requests.list()) {
      const auto body =
          platform::parseJSON(*platform::find<std::string>(*request.as<Dictionary>(), "body"));
      const auto* data =
          body ? platform::find<Dictionary>(*body->as<Dictionary>(), "data") : nullptr;
      const auto* type = data ? platform::find<std::string>(*data, "event_type") : nullptr;
      if (!type || *type != "location_update") continue;
      distances.push_back(platform::simulation::Sphere().distance(
          {*platform::find<double>(*data, "latitude"), *platform::find<double>(*data, "longitude")},
          platform::simulation::kSite));
    }
    return distances;
  }

  test::TemporaryDirectory directory_;
  sandbox::Sandbox service_;
  std::optional<std::string> startError_ = service_.start();
  sandbox::Speaker speaker_{service_};
};

TEST_F(LibraryTest, TellsTheServiceOfATripThatTheSystemFollows) {
  ASSERT_EQ(startError_, std::nullopt);
  auto started = replay::Rig::start();
  if (!started) GTEST_SKIP() << started.error();
  const auto rig = *std::move(started);
  startLibrary(rig->busAddress());
  platform::linuxos::requestLocationAuthorization();
  Ovinta::orders().create(kSiteID, "A-1", {.name = "Ann"}, {},
                          [](const OrderPtr& order, const auto&) {
                            EXPECT_TRUE(order);
                            Ovinta::orders().fetch();
                          });

  platform::simulation::Trip trip;
  trip.points = {{0s, northOfSite(1200)}, {60s, northOfSite(0)}};
  replay::TripReplay replay(trip, 3s, *platform::services().geodesy);
  // However slow all are to begin, the trip waits at its start.
  int looks = 0;
  EXPECT_TRUE(waitUntil([&] {
    if (looks++ % 20 == 0) rig->send({.coordinate = northOfSite(1200), .horizontalAccuracy = 5});
    return !toldDistances().empty();
  }));
  std::vector<double> told;
  EXPECT_TRUE(waitUntil([&] {
    if (const auto location = replay.next(steady_clock::now())) rig->send(*location);
    told = toldDistances();
    return !told.empty() && told.back() < 1;
  }));
  ASSERT_GE(told.size(), 2U);
  EXPECT_NEAR(told.front(), 1200, 1);
}

}  // namespace
}  // namespace ovinta
