#pragma once

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/notifications/StoredUserNotificationCenter.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BusFixture.h"
#include "tests/support/NotificationsDouble.h"

namespace ovinta::platform::linuxos {

/// For the entry into a circle of 100 m, with the identifier also as user info.
inline UserNotificationRequest requestFor(const char* identifier) {
  return {identifier,
          {"Near",
           "5 < 6 & more",
           NotificationSound::defaultSound,
           {{"site", identifier}, {"kinds", List{5.0, 1e22, -0.5, 5, true, nullptr}}}},
          {{simulation::kSite, 100, identifier, true, false}, false}};
}

/// A device whose moves are the test's, with applications of one store on a private bus.
class UserNotificationTest : public test::BusTest {
 protected:
  using Center = StoredUserNotificationCenter;

  UserNotificationTest() {
    services_.log = log_;
    services_.mainQueue = time_.mainQueue();
    services_.operationQueues = portable::makeOperationQueueFactory();
    services_.notificationCenter = portable::makeNotificationCenter();
    services_.geodesy = std::make_shared<simulation::Sphere>();
    services_.location = location_;
    center_ = makeCenter();
  }

  std::unique_ptr<Center> makeCenter(std::optional<AgentRegistry> agents = {},
                                     PositionSource source = PositionSource::automatic,
                                     bool usesAgent = true,
                                     std::shared_ptr<dbus::Bus> bus = nullptr) {
    return std::make_unique<Center>(
        services_, bus ? std::move(bus) : makeBus(),
        Center::Options{"org.example.app", file_, agents, usesAgent, source,
                        [this](const Dictionary& userInfo) {
                          clicked_.push_back(*find<std::string>(userInfo, "site"));
                        }});
  }

  /// After all that was asked of the centre so far.
  std::vector<std::string> pendingOf(Center& center) {
    std::atomic<bool> isAnswered = false;
    std::vector<std::string> identifiers;
    time_.runUntilIdle();
    center.getPendingNotificationRequests([&](const auto& requests) {
      for (const auto& request : requests) identifiers.push_back(request.identifier);
      isAnswered = true;
    });
    time_.waitUntil([&] { return isAnswered.load(); }, std::chrono::seconds(10));
    time_.runUntilIdle();
    return identifiers;
  }

  std::vector<std::string> arm(const std::vector<UserNotificationRequest>& requests) {
    for (const auto& request : requests) center_->add(request, nullptr);
    return pendingOf(*center_);
  }

  /// What is pending once the device is there.
  std::vector<std::string> moveTo(double metresNorth) {
    location_->deliver(
        {.coordinate = simulation::northOfSite(metresNorth), .horizontalAccuracy = 5});
    return pendingOf(*center_);
  }

  /// Goes out of the region and in, and lets the centre see both.
  std::vector<std::string> enter() {
    for (const double metres : {500, 0}) moveTo(metres);
    return pendingOf(*center_);
  }

  /// Until all that is being shown was shown.
  void waitForPending(const std::vector<std::string>& identifiers) {
    for (int look = 0; look < 1000 && pendingOf(*center_) != identifiers; ++look) {
      passBy(kNotificationsName);
    }
    EXPECT_THAT(pendingOf(*center_), testing::ElementsAreArray(identifiers));
  }

  void waitForClick() {
    waitUntil([&] { return !clicked_.empty(); });
    passBy(kNotificationsName);
    EXPECT_THAT(clicked_, testing::ElementsAre("one"));
  }
  void waitForMissing(const std::string& name) {
    waitUntil([&] { return std::ranges::count(log_->lines(), name + " is not on the bus") == 1; });
  }

  void waitForShown(std::size_t count) {
    waitUntil([&] { return desktop_.shown().size() >= count; });
    EXPECT_THAT(desktop_.shown(), testing::SizeIs(count));
  }

  const std::filesystem::path file_ = folder_.path() / "app" / "Notifications.sqlite";
  test::NotificationsDouble desktop_{daemon_};
  std::shared_ptr<simulation::SimulatedLocation> location_ =
      std::make_shared<simulation::SimulatedLocation>(time_.mainQueue(),
                                                      std::make_shared<simulation::Sphere>());
  Services services_;
  std::vector<std::string> clicked_;
  std::unique_ptr<Center> center_;
};

}  // namespace ovinta::platform::linuxos
