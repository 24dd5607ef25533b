// The device of the simulation: its battery, position, beacons, notifications and log.
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/Simulation.h"
#include "tests/platform/contract/DeviceContract.h"
#include "tests/platform/contract/LocationManagerContract.h"
#include "tests/platform/contract/LogContract.h"
#include "tests/platform/contract/UserNotificationCenterContract.h"

namespace ovinta::platform::contract {
namespace {

struct LogRig : testing::Test {
  std::vector<std::string> read(std::size_t count) {
    const auto before = std::exchange(read_, read_ + count);
    while (log_->lines().size() < read_) std::this_thread::yield();
    const auto lines = log_->lines();
    return {lines.begin() + static_cast<std::ptrdiff_t>(before), lines.end()};
  }

  std::shared_ptr<simulation::RecordingLog> log_ = std::make_shared<simulation::RecordingLog>();
  std::size_t read_ = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, LogContract, LogRig);

/// A simulated device and its world.
struct WorldRig : testing::Test {
  void settle() { simulation_.time().runUntilIdle(); }
  void advance(TimeInterval interval) { simulation_.time().advance(interval); }
  void allow(bool isAllowed) {
    services_->setLocationServicesEnabled(isAllowed);
    services_->setAuthorizationStatus(isAllowed ? 4 : 1);
    settle();
  }
  void go(double metresNorth, double accuracy = 5) {
    services_->deliver({simulation::northOfSite(metresNorth), accuracy});
    settle();
  }

  simulation::Simulation simulation_{simulation::sphericalServices(), Date{}};
  simulation::SimulatedLocation* services_ = &simulation_.location();
};

struct DeviceRig : WorldRig {
  void setBattery(BatteryState state) { device_->setBatteryState(state); }
  void waitUntil(const std::function<bool()>& condition) { EXPECT_TRUE(condition()); }

  simulation::SimulatedDevice* device_ = &simulation_.device();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, DeviceContract, DeviceRig);

struct LocationRig : WorldRig {
  LocationRig() { services_->setAuthorizationStatus(kAuthorizationNotDetermined); }
  bool isIdle() { return simulation_.time().pendingTaskCount() == 0; }
  void passSecond(const std::vector<std::uint16_t>& minors) {
    std::vector<RangedBeacon> heard{{kForeignUUID, 1, 1, -60, 1}};
    for (const auto minor : minors) heard.push_back({kBeaconUUID, 1, minor, -60, 1});
    services_->setBeaconsInRange(heard);
    advance(std::chrono::seconds(1));
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, LocationManagerContract, LocationRig);

struct NotificationRig : WorldRig {
  std::vector<std::string> shown() {
    std::vector<std::string> titles;
    for (const auto& each : center_->fired()) titles.push_back(each.content.title);
    return titles;
  }

  simulation::SimulatedUserNotificationCenter* center_ = &simulation_.notifications();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, UserNotificationCenterContract, NotificationRig);

}  // namespace
}  // namespace ovinta::platform::contract
