// The real GeoClue, with a receiver played by the test.
#include "platform/linux/location/geoclue/GeoClueProvider.h"
#include "replay/Rig.h"
#include "tests/platform/linux/PositionFixture.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using replay::Rig;

class GeoClueDaemonTest : public PositionTest {
 protected:
  /// Without a GeoClue that can be started the test has no rig, and is skipped.
  void start(const Rig::Options& options = {}) {
    auto rig = Rig::start(options);
    if (!rig) GTEST_SKIP() << rig.error();
    rig_ = *std::move(rig);
    bus_ = std::make_shared<dbus::Bus>(rig_->busAddress(), time_.mainQueue(), log_);
  }

  std::unique_ptr<PositionStream> open() {
    provider_ = std::make_unique<GeoClueProvider>(
        bus_, time_.mainQueue(), GeoClueProvider::Options{.desktopID = "org.example.app"});
    return PositionTest::open(*provider_, 0);
  }

  /// GeoClue reads the receiver when it likes.
  void sendUntilTold(double metresNorth) {
    PositionTest::sendUntilTold(metresNorth, [this](Coordinate place) {
      rig_->send({.coordinate = place, .horizontalAccuracy = 8, .speed = 10});
    });
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
  expectOfNow();

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
}  // namespace ovinta::platform::linuxos
