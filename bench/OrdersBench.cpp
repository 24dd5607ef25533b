// What a push costs, depending on how many orders there are.
#include <chrono>
#include <cstdlib>
#include <string>

#include "OvintaSDK/orders/OrdersManager.h"
#include "bench/Row.h"
#include "bench/SimulatedLibrary.h"

namespace ovinta::bench {
namespace {

using namespace std::chrono_literals;

template <std::size_t count>
OrdersManager& managerOfOrders() {
  static SimulatedLibrary device;
  static const bool isReady = [] {
    device.library.orders().setAll(makeOpenOrders(count));
    device.queues->runAll();
    return true;
  }();
  if (!isReady) std::abort();
  return device.library.orders();
}

/// Pushes to one order after another, all over the list, of which two at a time bring the order
/// back to where it was.
void push(benchmark::State& state, OrdersManager& orders, std::size_t count, const char* key,
          const char* there, const char* back) {
  constexpr std::size_t kStride = 7919;
  std::size_t place = 0;
  bool isThere = false;
  for (auto _ : state) {
    isThere = !isThere;
    if (isThere) place = (place + kStride) % count;
    orders.updateOrderFromNotification(
        {{"order_id", std::to_string(place + 1)}, {key, isThere ? there : back}});
  }
}

/// The customer moves on.
template <std::size_t count>
void move(benchmark::State& state) {
  push(state, managerOfOrders<count>(), count, "customer_state", "en_route", "created");
}

/// The order is closed, and is open again.
template <std::size_t count>
void close(benchmark::State& state) {
  push(state, managerOfOrders<count>(), count, "order_state", "completed", "created");
}

/// A customer with a long past is followed: who looks at the open orders after each push finds a
/// few.
void look(benchmark::State& state) {
  static SimulatedLibrary device;
  OrdersManager& orders = device.library.orders();
  static const OrderList all = makeOpenOrders(100'000);
  for (const OrderPtr& order : all) {
    order->setState(order->id <= 3 ? OrderState::created : OrderState::gone);
  }
  orders.setAll(all);
  device.queues->runAll();
  for (auto _ : state) {
    orders.updateOrderFromNotification({{"order_id", "2"}, {"customer_state", "en_route"}});
    if (orders.open()->size() != 3) std::abort();
  }
}

const TimeRow kLook{"push, and the 3 open of 100,000 looked at", &look, 10us, Clock::processor};
const TimeRow kMove{"push applied at 100,000 orders", &move<100'000>, 100us, Clock::processor};
const TimeRow kClose{"push that closes an order at 100,000", &close<100'000>, 100us,
                     Clock::processor};
const TimeRow kMoveGrowth{"push: 1,000 orders to 100", &move<100>, &move<1'000>, 5,
                          Clock::processor};
const TimeRow kMoveGrowth2{"push: 10,000 orders to 100", &move<100>, &move<10'000>, 5,
                           Clock::processor};
// Where the caches belong to others, each order costs misses; linear growth would be a
// thousandfold.
constexpr double kMisses = 20;
const TimeRow kMoveGrowth3{"push: 100,000 orders to 100", &move<100>, &move<100'000>, kMisses,
                           Clock::processor};
const TimeRow kCloseGrowth{"push that closes: 100,000 orders to 100", &close<100>, &close<100'000>,
                           kMisses, Clock::processor};

}  // namespace
}  // namespace ovinta::bench
