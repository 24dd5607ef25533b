// Virtual time against a bare heap of tasks, and a position on its way through the library against
// one that is only delivered.
#include <chrono>
#include <cstdlib>
#include <functional>
#include <queue>
#include <random>
#include <utility>
#include <vector>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "bench/Row.h"
#include "bench/SimulatedLibrary.h"

namespace ovinta::bench {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kTasks = 10'000;

const std::vector<platform::TimeInterval>& delays() {
  static const auto made = [] {
    std::mt19937 random(1);
    std::vector<platform::TimeInterval> delays;
    for (std::size_t i = 0; i < kTasks; ++i) {
      delays.push_back(std::chrono::milliseconds(random() % 3'600'000));
    }
    return delays;
  }();
  return made;
}

void runHeap(benchmark::State& state) {
  struct Entry {
    platform::TimeInterval due;
    std::size_t number;
    std::function<void()> task;
    bool operator<(const Entry& other) const {
      return std::pair(due, number) > std::pair(other.due, other.number);
    }
  };
  std::size_t done = 0;
  for (auto _ : state) {
    std::priority_queue<Entry> tasks;
    for (const auto delay : delays()) tasks.push({delay, tasks.size(), [&done] { ++done; }});
    while (!tasks.empty()) {
      const auto task = tasks.top().task;
      tasks.pop();
      task();
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(done));
}

void runVirtualTime(benchmark::State& state) {
  platform::simulation::VirtualTime time{platform::Date{}};
  const auto queue = time.mainQueue();
  std::size_t done = 0;
  for (auto _ : state) {
    for (const auto delay : delays()) queue->asyncAfter(delay, [&done] { ++done; });
    time.advance(1h);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(done));
}

/// Takes positions as the library does, and does nothing with them.
class IdleDelegate : public platform::LocationManagerDelegate {
 public:
  explicit IdleDelegate(platform::MainQueue& queue) : queue_(queue) {}
  void didUpdateLocations(const std::vector<platform::Location>& locations) override {
    last_ = locations.back();
    queue_.asyncAfter(2s, [] {});
  }
  void didChangeAuthorizationStatus(platform::AuthorizationStatus /*status*/) override {}
  void didRangeBeacons(const std::vector<platform::RangedBeacon>& /*beacons*/,
                       const platform::IdentifiedBeaconRegion& /*region*/) override {}

 private:
  platform::MainQueue& queue_;
  platform::Location last_;
};

/// One position a second.
void deliver(benchmark::State& state, SimulatedLibrary& device) {
  double latitude = 0;
  for (auto _ : state) {
    latitude = latitude < 1 ? latitude + 0.001 : 0;
    device.location->deliver({.coordinate = {.latitude = latitude, .longitude = 0},
                              .horizontalAccuracy = 5,
                              .speed = 1,
                              .timestamp = device.time.now()});
    device.time.advance(1s);
  }
}

void deliverOnly(benchmark::State& state) {
  SimulatedLibrary device;
  IdleDelegate delegate(*device.services.mainQueue);
  const auto manager = device.services.location->makeLocationManager();
  manager->setDelegate(&delegate);
  manager->startUpdatingLocation();
  deliver(state, device);
}

void deliverToLibrary(benchmark::State& state) {
  SimulatedLibrary device;
  device.library.makeLocationUpdater();
  device.library.orders().setOpen(makeOpenOrders(1));
  device.services.notificationCenter->post({.name = SDKNotification::ordersUpdated, .object = {}});
  device.time.runUntilIdle();
  if (!device.location->isUpdating()) std::abort();
  deliver(state, device);
}

const TimeRow kVirtualTime{"virtual time, each of 10,000 tasks", &runHeap, &runVirtualTime, 3,
                           Clock::processor};
const TimeRow kDelivery{"position delivered, one order open", &deliverOnly, &deliverToLibrary, 3,
                        Clock::processor};

}  // namespace
}  // namespace ovinta::bench
