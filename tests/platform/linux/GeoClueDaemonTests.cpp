// The real GeoClue, with a receiver played by the test.
#include "platform/linux/position/GeoClueProvider.h"
#include "replay/Rig.h"
#include "tests/platform/linux/PositionFixture.h"

namespace ovinta::platform::linux {
namespace {

using namespace std::chrono_literals;
using replay::Rig;
using simulation::northOfSite;

class GeoClueDaemonTest : public PositionTest {
 protected:
  /// Without a GeoClue that can be started the test has no rig, and is skipped.
  void start(const Rig::Options& options = {}) {
    auto rig = Rig::start(options);
    if (const auto* reason = std::get_if<std::string>(&rig)) GTEST_SKIP() << *reason;
    rig_ = std::get<std::unique_ptr<Rig>>(std::move(rig));
    bus_ = std::make_shared<dbus::Bus>(rig_->busAddress(), time_.mainQueue(), log_);
  }

  std::unique_ptr<PositionStream> open() {
    provider_ = std::make_unique<GeoClueProvider>(
        bus_, time_.mainQueue(), GeoClueProvider::Options{.desktopID = "org.example.app"});
    return PositionTest::open(*provider_, 0);
  }

  /// Until GeoClue, which reads the receiver when it likes, has told of the place.
  void sendUntilTold(double metresNorth) {
    const Coordinate place = northOfSite(metresNorth);
    const auto isTold = [&] {
      return !locations_.empty() &&
             simulation::Sphere().distance(locations_.back().coordinate, place) < 1;
    };
    for (int attempt = 0; attempt < 20 && !isTold(); ++attempt) {
      rig_->send({.coordinate = place, .horizontalAccuracy = 8, .speed = 10});
      time_.waitUntil(isTold, 1s);
    }
    EXPECT_TRUE(isTold()) << metresNorth;
  }

  std::unique_ptr<Rig> rig_;
  std::unique_ptr<GeoClueProvider> provider_;
};

TEST_F(GeoClueDaemonTest, ATripIsFollowedAcrossARestartOfTheDaemon) {
  start();
  if (!rig_) return;
  EXPECT_FALSE(rig_->isFollowed());
  const auto stream = open();
  waitForAccess(PositionAccess::granted);
  for (const double metres : {1000, 700, 400}) sendUntilTold(metres);
  EXPECT_TRUE(rig_->isFollowed());
  EXPECT_EQ(locations_.back().horizontalAccuracy, kBestAccuracyMetres);
  EXPECT_NEAR(locations_.back().speed, 10, 0.1);
  EXPECT_LT(std::chrono::abs(locations_.back().timestamp - std::chrono::system_clock::now()), 60s);

  rig_->stopDaemon();
  waitForAccess(PositionAccess::absent);
  rig_->startDaemon();
  rig_->startAgent();
  waitForAccess(PositionAccess::granted);
  sendUntilTold(100);
}

TEST_F(GeoClueDaemonTest, RefusesWhomItsConfigurationRefuses) {
  start({.configuration = "[org.example.app]\nallowed=false\nsystem=false\nusers=\n"});
  if (!rig_) return;
  const auto stream = open();
  waitForAccess(PositionAccess::denied);
}

TEST_F(GeoClueDaemonTest, SaysNothingUntilThereIsAnAgent) {
  start({.hasAgent = false});
  if (!rig_) return;
  const auto stream = open();
  EXPECT_FALSE(time_.waitUntil([&] { return access_.has_value(); }, 300ms));
  time_.advance(30s);
  waitForAccess(PositionAccess::undecided);
  rig_->startAgent();
  waitForAccess(PositionAccess::granted);
}

}  // namespace
}  // namespace ovinta::platform::linux
