// What it costs to look at the open orders anew, each at a site with beacons of its own.
#include <array>
#include <chrono>
#include <cstdlib>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "bench/Row.h"
#include "bench/SimulatedLibrary.h"

namespace ovinta::bench {
namespace {

using namespace std::chrono_literals;

/// A device that is followed, and twice the same orders, as two fetches bring them.
struct FollowedDevice {
  explicit FollowedDevice(std::size_t count) : lists{makeOpenOrders(count), makeOpenOrders(count)} {
    device.library.makeLocationUpdater();
    device.library.orders().setOpen(lists[0]);
    tell();
    if (device.location->rangedRegions().size() != count) std::abort();
  }

  void tell() {
    device.services.notificationCenter->post(
        {.name = SDKNotification::ordersUpdated, .object = {}});
    device.time.runUntilIdle();
  }

  SimulatedLibrary device;
  const std::array<OrderList, 2> lists;
};

template <std::size_t count>
void update(benchmark::State& state) {
  static FollowedDevice followed(count);
  std::size_t fetches = 0;
  for (auto _ : state) {
    state.PauseTiming();
    followed.device.library.orders().setOpen(followed.lists[++fetches % 2]);
    state.ResumeTiming();
    followed.tell();
  }
  if (followed.device.location->rangedRegions().size() != count) std::abort();
  state.SetItemsProcessed(static_cast<std::int64_t>(count) * state.iterations());
}

void updateAll(benchmark::State& state) {
  update<1'000>(state);
  state.SetItemsProcessed(state.iterations());
}

const TimeRow kUpdate{"orders updated, 1,000 open, one region each", &updateAll, 200us,
                      Clock::processor};
const TimeRow kGrowth{"orders updated, each of 1,000 to 100", &update<100>, &update<1'000>, 2,
                      Clock::processor};
const TimeRow kGrowth2{"orders updated, each of 10,000 to 100", &update<100>, &update<10'000>, 2,
                       Clock::processor};

}  // namespace
}  // namespace ovinta::bench
