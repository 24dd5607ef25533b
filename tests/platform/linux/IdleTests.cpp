// The whole library on the services of this system: whatever nobody needs is let go.
#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/linux/Linux.h"
#include "platform/linux/device/SystemDevice.h"
#include "platform/linux/device/UPower.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "platform/linux/notifications/StoredUserNotificationCenter.h"
#include "platform/portable/Portable.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BlueZDouble.h"
#include "tests/support/GeoClueDouble.h"
#include "tests/support/LocalServer.h"
#include "tests/support/NotificationsDouble.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::Not;

/// An application with a customer, on a device with an adapter and a battery.
class IdleTest : public test::SDKFixture {
 protected:
  IdleTest() {
    bluez_.addAdapter("hci0");
    upower_.addObject(kUPowerDisplayDevice, kUPowerDevice,
                      {{"State", dbus::write(4U)}, {"IsPresent", dbus::write(true)}});
    restartWith([this](Services& changed) {
      changed.location = std::make_shared<SystemLocationServices>(
          hub_,
          std::make_shared<BeaconScanner>(bus_, time.mainQueue(), log, BeaconScanner::Options{}));
      changed.device =
          std::make_shared<SystemDevice>(bus_, time.clock(), directory.path() / "none");
      changed.userNotifications = std::make_shared<StoredUserNotificationCenter>(
          changed, bus_,
          StoredUserNotificationCenter::Options{"org.example.app",
                                                directory.path() / "Notifications.sqlite",
                                                AgentRegistry(directory.path() / "agent")});
    });
    signIn();
    Ovinta::configure({});
  }

  void waitUntil(const std::function<bool()>& condition) {
    const auto progress = [&] {
      queues->runAll();
      http->deliverAll();
      return condition();
    };
    ASSERT_TRUE(time.waitUntil(progress, 30s));
  }

  /// Has all arrive that GeoClue has sent so far.
  void passBy() {
    bool isAnswered = false;
    dbus::Service geoclue(bus_, kGeoClueName);
    geoclue.getProperties("/", "none", [&](const auto&) { isAnswered = true; });
    waitUntil([&] { return isAnswered; });
  }

  /// What the bus wakes the library for.
  std::vector<std::string> matchRules() {
    using Rules = std::map<std::string, std::vector<std::string>>;
    std::optional<std::vector<std::string>> all;
    stats_.call("/org/freedesktop/DBus", "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules", {},
                [&](const dbus::Reply& reply) {
                  all.emplace();
                  const auto found = dbus::read<Rules>(reply.values, 0).value();
                  for (const auto& [client, rules] : found) {
                    all->insert(all->end(), rules.begin(), rules.end());
                  }
                });
    waitUntil([&] { return all.has_value(); });
    return all.value_or(std::vector<std::string>());
  }

  std::size_t calls() {
    std::size_t count = 0;
    for (auto* service : {&geoclue_.service(), &bluez_.service(), &upower_}) {
      count += service->calls().size();
    }
    return count;
  }

  /// From some time after the last thing that was asked of the library.
  void expectIdle() {
    const auto limit = std::chrono::steady_clock::now() + 30s;
    for (auto rules = matchRules(); !rules.empty() || time.pendingTaskCount() > 0;
         rules = matchRules()) {
      ASSERT_LT(std::chrono::steady_clock::now(), limit) << testing::PrintToString(rules);
      advance(30s);
    }
    waitUntil([&] { return geoclue_.clientCount() == 0 && !bluez_.isDiscovering("hci0"); });
    const auto before = std::pair(calls(), http->requests().size());
    advance(60s);
    waitUntil([&] { return time.pendingTaskCount() == 0; });
    EXPECT_THAT(matchRules(), IsEmpty());
    EXPECT_EQ(std::pair(calls(), http->requests().size()), before);
  }

  replay::PrivateBus daemon_;
  test::GeoClueDouble geoclue_{daemon_};
  test::BlueZDouble bluez_{daemon_};
  test::NotificationsDouble desktop_{daemon_};
  test::ServiceDouble upower_{daemon_, kUPowerName};
  std::shared_ptr<dbus::Bus> bus_ =
      std::make_shared<dbus::Bus>(daemon_.address(), time.mainQueue(), log);
  std::shared_ptr<PositionHub> hub_ = test::makeGeoClueHub(bus_, time.mainQueue());
  dbus::Service stats_{std::make_shared<dbus::Bus>(daemon_.address(), time.mainQueue(), log),
                       "org.freedesktop.DBus"};
};

TEST_F(IdleTest, RestsOnceItIsConfigured) {
  waitUntil([&] { return services.location->locationServicesEnabled(); });
  expectIdle();
  EXPECT_EQ(calls(), 0U);
}

TEST_F(IdleTest, RestsAgainWhenTheLastOrderIsCompleted) {
  hub_->askPermission();
  waitUntil([&] { return hub_->status() == 4; });
  const Dictionary region{{"uuid", "2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6"}};
  fetchOrders({test::with(test::requiredOrder(), {{"site_beacon_regions", List{region}}})});
  waitUntil([&] { return geoclue_.service().count("Start") == 3; });
  waitUntil([&] { return bluez_.isDiscovering("hci0"); });
  passBy();
  geoclue_.feed({40.7, -74}, 10, 1, static_cast<std::uint64_t>(time.now().time_since_epoch() / 1s));
  // The signal, and then the properties that it has the library ask for.
  for (int answer = 0; answer < 2; ++answer) passBy();
  advance(3s);
  EXPECT_THAT(bodies("POST", "m/v1/events"), Not(IsEmpty()));
  waitUntil([&] { return services.device->batteryState() == BatteryState::full; });
  EXPECT_EQ(geoclue_.clientCount(), 2U);

  fetchOrders({test::with(test::requiredOrder(), {{"state", "completed"}})});
  expectIdle();
}

TEST_F(IdleTest, RestsAgainWhenNothingIsArmed) {
  services.userNotifications->add(
      {"one", {"Near", "Welcome", NotificationSound::none, {}}, {{{40.7, -74}, 100, "one"}, false}},
      {});
  waitUntil([&] { return geoclue_.service().count("Start") == 1; });
  for (const double latitude : {41.0, 40.7}) geoclue_.feed({latitude, -74});
  waitUntil([&] { return desktop_.shown().size() == 1; });
  desktop_.click(desktop_.shown().at(0));
  expectIdle();
}

class ThreadsTest : public test::SDKFixture {
 protected:
  static std::ptrdiff_t count() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
  }

  /// Has `runMainLoop` return after what the main thread has to do so far.
  void quitAfterAll() { services.mainQueue->async(&quitMainLoop); }
};

TEST_F(ThreadsTest, AreMadeWhenThereIsSomethingToDo) {
  test::LocalServer server(test::LocalServer::answering([](const auto& request) {
    const bool isOfOrders = request.target.ends_with("orders");
    return test::httpAnswer("200 OK", isOfOrders ? test::dataText(List{test::requiredOrder()})
                                                 : test::dataText(test::customerRecord()));
  }));
  const auto before = count();
  restartWith([this](Services& changed) {
    changed = linuxos::makeServices(
        {.applicationID = "tests", .dataDirectory = directory.path() / "data", .log = log});
    // The orders may be still being stored when the directory goes.
    changed.persistentContainers = portable::makeInMemoryPersistentContainerFactory();
  });
  EXPECT_EQ(count(), before);
  Ovinta::configure({});
  UserDefaultsKey::apiBase.set(server.url(""));
  applicationDidBecomeActive();
  quitAfterAll();
  runMainLoop();
  EXPECT_EQ(count(), before);

  std::optional<OrderList> fetched;
  Ovinta::customer().create({}, true, true, [&](const auto&, const auto&) {
    Ovinta::orders().fetch([&](const auto& orders, const auto&) {
      fetched = orders;
      // What follows a callback is over when the answer to another request is there.
      services.urlSession->startDataTask(
          {.url = {server.url("")}},
          [this](const auto&, const auto&, const auto&) { quitAfterAll(); });
    });
  });
  runMainLoop();
  EXPECT_EQ(fetched.value_or(OrderList()).size(), 1U);
  const auto ofServer = static_cast<std::ptrdiff_t>(server.connectionCount());
  // One for HTTP, and at most one for each of the three operations.
  EXPECT_LE(count(), before + ofServer + 4);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
