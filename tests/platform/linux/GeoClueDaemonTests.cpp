// The real GeoClue on a bus of its own, with its own agent and a receiver played by the test.
#include <unistd.h>

#include "platform/linux/position/GeoClueProvider.h"
#include "tests/platform/linux/PositionFixture.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Files.h"
#include "tests/support/NMEAFeed.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using simulation::northOfSite;

constexpr const char* kDaemon = "/usr/libexec/geoclue";
constexpr const char* kAgent = "/usr/libexec/geoclue-2.0/demos/agent";
constexpr const char* kConfiguration = "/etc/geoclue/geoclue.conf";

/// Nothing may leave the machine: without an address of its own the daemon would ask one on the
/// network for its position, even with that source switched off.
std::string configuration(const std::string& socket) {
  return "[agent]\nwhitelist=geoclue-demo-agent\n[network-nmea]\nenable=true\nnmea-socket=" +
         socket +
         "\n[3g]\nenable=false\n[cdma]\nenable=false\n[modem-gps]\nenable=false\n[compass]\n"
         "enable=false\n[wifi]\nenable=false\nurl=http://127.0.0.1:9/\n"
         "submission-url=http://127.0.0.1:9/\nsubmit-data=false\nsubmission-nick=geoclue\n"
         "[org.example.allowed]\nallowed=true\nsystem=false\nusers=\n"
         "[org.example.refused]\nallowed=false\nsystem=false\nusers=\n";
}

/// A private mount is what lets the daemon read a configuration of the test's.
bool canMount() {
  return access(kDaemon, X_OK) == 0 && access(kAgent, X_OK) == 0 &&
         access(kConfiguration, R_OK) == 0 && geteuid() == 0 &&
         std::system("unshare -m true 2>/dev/null") == 0;
}

class GeoClueDaemonTest : public PositionTest {
 protected:
  void SetUp() override {
    if (!canMount()) GTEST_SKIP() << "takes root, private mounts and the package geoclue-2.0";
    test::writeFile(folder_.path() / "geoclue.conf",
                    configuration((folder_.path() / "nmea").string()));
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
  }

  std::unique_ptr<test::ChildProcess> run(std::vector<std::string> command) const {
    return std::make_unique<test::ChildProcess>(
        std::move(command), std::vector{"DBUS_SYSTEM_BUS_ADDRESS=" + daemon_.address()});
  }
  std::unique_ptr<test::ChildProcess> runDaemon() const {
    return run({"unshare", "-m", "sh", "-c", R"(mount --bind "$0" "$1" && exec "$2" -t 0)",
                (folder_.path() / "geoclue.conf").string(), kConfiguration, kDaemon});
  }
  std::unique_ptr<test::ChildProcess> runAgent() const { return run({kAgent}); }

  std::unique_ptr<PositionStream> open(const char* desktopID,
                                       std::chrono::milliseconds answerTimeout = 20s) {
    provider_ = std::make_unique<GeoClueProvider>(
        bus_, time_.mainQueue(),
        GeoClueProvider::Options{.desktopID = desktopID, .answerTimeout = answerTimeout});
    return PositionTest::open(*provider_, 0);
  }

  /// Until the daemon, which reads the receiver when it likes, has told of the place.
  void feedUntilTold(test::NMEAFeed& feed, double metresNorth) {
    const Coordinate place = northOfSite(metresNorth);
    const auto isTold = [&] {
      return !locations_.empty() &&
             simulation::Sphere().distance(locations_.back().coordinate, place) < 1;
    };
    for (int attempt = 0; attempt < 20 && !isTold(); ++attempt) {
      feed.send(place);
      time_.waitUntil(isTold, 1s);
    }
    EXPECT_TRUE(isTold()) << metresNorth;
  }

  std::unique_ptr<GeoClueProvider> provider_;
};

TEST_F(GeoClueDaemonTest, ATripIsFollowedAcrossARestartOfTheDaemon) {
  test::NMEAFeed feed(folder_.path() / "nmea");
  auto daemon = runDaemon();
  auto agent = runAgent();
  const auto stream = open("org.example.allowed");
  waitForAccess(PositionAccess::granted);
  ASSERT_TRUE(feed.accept());
  for (const double metres : {1000, 700, 400}) feedUntilTold(feed, metres);
  EXPECT_EQ(locations_.back().horizontalAccuracy, kBestAccuracyMetres);
  EXPECT_LT(std::chrono::abs(locations_.back().timestamp - std::chrono::system_clock::now()), 60s);

  agent = nullptr;
  daemon = nullptr;
  waitForAccess(PositionAccess::absent);
  daemon = runDaemon();
  agent = runAgent();
  waitForAccess(PositionAccess::granted);
  ASSERT_TRUE(feed.accept());
  feedUntilTold(feed, 100);
}

TEST_F(GeoClueDaemonTest, RefusesWhomItsConfigurationRefuses) {
  const auto daemon = runDaemon();
  const auto agent = runAgent();
  const auto stream = open("org.example.refused");
  waitForAccess(PositionAccess::denied);
}

TEST_F(GeoClueDaemonTest, SaysNothingUntilThereIsAnAgent) {
  test::NMEAFeed feed(folder_.path() / "nmea");
  const auto daemon = runDaemon();
  const auto stream = open("org.example.allowed", 200ms);
  waitForAccess(PositionAccess::undecided);
  const auto agent = runAgent();
  for (int attempt = 0; attempt < 50 && access_ != PositionAccess::granted; ++attempt) {
    time_.advance(15s);
    time_.waitUntil([&] { return access_ == PositionAccess::granted; }, 500ms);
  }
  EXPECT_EQ(access_, PositionAccess::granted);
}

}  // namespace
}  // namespace ovinta::platform::linux
