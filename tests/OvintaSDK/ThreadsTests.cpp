// The library under several threads at once, on its real queues, HTTP client and stores; and the
// end of a process in the middle of its work.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <latch>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/CoreOrder.h"
#include "platform/FatalError.h"
#include "platform/JSON.h"
#include "platform/linux/Linux.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/time/VirtualTime.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/CannedRecords.h"
#include "tests/support/Command.h"
#include "tests/support/LocalServer.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;
using platform::simulation::RecordingLog;
using platform::simulation::SimulatedLocation;

constexpr int kThreads = 4;
constexpr int kRounds = 10;
/// How often a test looks whether it is done, and how many times it does so: two minutes, since the
/// thread sanitizer is slow.
constexpr auto kPause = 10ms;
constexpr int kMostPauses = 12'000;
/// The service has orders 1 to this. The last one is gone when an event comes, and the one before
/// accepts no events.
constexpr int kOrders = 6;

std::string answer(const ReceivedRequest& request) {
  const auto isAbout = [&request](int order) {
    return request.body.find("\"order_id\":" + std::to_string(order)) != std::string::npos;
  };
  if (request.target == "/m/v1/customer") {
    return httpAnswer("200 OK", dataText(customerRecord()));
  }
  if (request.target == "/m/v1/events") {
    if (isAbout(kOrders)) return httpAnswer("410 Gone");
    return httpAnswer(isAbout(kOrders - 1) ? "422 Unprocessable Entity" : "200 OK");
  }
  if (request.method != "GET") {
    return httpAnswer("200 OK", dataText(requiredOrder(9)));
  }
  platform::List orders;
  for (int id = 1; id <= kOrders; ++id) {
    orders.emplace_back(with(fullOrder(), {{"id", id},
                                           {"push_token", ""},
                                           {"state", id % 3 == 0 ? "cancelled" : "ready"},
                                           {"updated_at", "2021-03-04T10:00:00.000Z"}}));
  }
  return httpAnswer("200 OK", dataText(std::move(orders)));
}

class Threads : public ::testing::Test {
 protected:
  Threads() {
    setenv("no_proxy", "*", 1);
    platform::Services services =
        platform::linuxos::makeServices({.dataDirectory = directory.path()});
    services.log = log;
    services.mainQueue = time.mainQueue();
    location = std::make_shared<SimulatedLocation>(services.mainQueue, services.geodesy);
    services.location = location;
    platform::install(services);
    Library::replaceProcess();
    UserDefaultsKey::apiBase.set(server.url());
    observer = services.notificationCenter->addObserver(
        SDKNotification::ordersUpdated, [updates = updates](const auto&) { ++*updates; });
  }

  /// Runs `work` with the numbers 0 to kThreads - 1, each on a thread of its own, and serves the
  /// main queue until `isDone` holds after all have returned.
  void run(const std::function<void(int)>& work, const std::function<bool()>& isDone) {
    std::latch begin(kThreads);
    std::atomic<int> running = kThreads;
    std::vector<std::jthread> threads;
    for (int number = 0; number < kThreads; ++number) {
      threads.emplace_back([&, number] {
        begin.arrive_and_wait();
        work(number);
        --running;
      });
    }
    int step = 0;
    while (!time.waitUntil([&] { return running == 0 && isDone(); }, kPause)) {
      // The test cannot go on: what is under way writes to its variables.
      if (step == kMostPauses) platform::fatalError("the threads' work is not done");
      location->setAuthorizationStatus(step % 5 == 0 ? 4 : 3);
      location->deliver({.coordinate = {.latitude = 40 + 0.01 * (++step % 100), .longitude = -74},
                         .timestamp = time.now()});
      time.advance(1s);
    }
  }

  std::ptrdiff_t syncs() const {
    const auto lines = log->lines();
    return std::ranges::count(lines, Line::synced);
  }

  /// Fetches once more, and expects lists and store as the service has them.
  void expectOrdersOfTheService() {
    std::atomic<bool> isFetched = false;
    for (int pause = 0; pause < kMostPauses && !isFetched; ++pause) {
      // One that a push has started may still be under way.
      if (pause > 0) time.waitUntil([] { return false; }, kPause);
      std::latch answered(1);
      Ovinta::orders().fetch([&](const auto& orders, const auto&) {
        isFetched = orders.has_value();
        answered.count_down();
      });
      answered.wait();
    }
    ASSERT_TRUE(isFetched);
    EXPECT_EQ(Ovinta::orders().all()->size(), kOrders);
    EXPECT_EQ(Ovinta::orders().open()->size(), kOrders - kOrders / 3);
    EXPECT_EQ(Ovinta::orders().closed()->size(), kOrders / 3);
    const auto context = Library::process().context()->persistentContainer().newBackgroundContext();
    const auto kept = context->fetch(CoreOrder::fetchRequest());
    ASSERT_TRUE(kept) << kept.error().localizedDescription;
    EXPECT_EQ(kept->size(), kOrders);
  }

  TemporaryDirectory directory;
  platform::simulation::VirtualTime time{platform::Date(1614889800s)};
  std::shared_ptr<RecordingLog> log = std::make_shared<RecordingLog>();
  std::shared_ptr<SimulatedLocation> location;
  std::shared_ptr<std::atomic<int>> updates = std::make_shared<std::atomic<int>>(0);
  std::unique_ptr<platform::NotificationObserver> observer;
  LocalServer server{LocalServer::answering(&answer)};
};

TEST_F(Threads, MakeEachManagerOnce) {
  std::vector<std::array<const void*, 4>> touched(kThreads);
  run(
      [&touched](int number) {
        Library& state = Library::process();
        touched[static_cast<std::size_t>(number)] = {&Ovinta::orders(), &Ovinta::customer(),
                                                     &state.context()->apiQueue(),
                                                     &state.context()->persistentContainer()};
        Ovinta::configure({{"token", std::to_string(number)}});
      },
      [] { return true; });
  EXPECT_EQ(std::set(touched.begin(), touched.end()).size(), 1u);
  EXPECT_NE(Library::process().locationUpdater(), nullptr);
}

TEST_F(Threads, UseTheLibraryAtOnce) {
  Ovinta::configure({{"token", "app"}});
  Ovinta::customer().setCurrent(std::make_shared<const Customer>(customer()));
  std::atomic<int> asked = 0;
  std::atomic<int> reported = 0;
  std::atomic<int> fetched = 0;
  const auto report = [&](const auto&, const auto&) { ++reported; };

  const auto work = [&](int number) {
    OrdersManager& orders = Ovinta::orders();
    for (int round = 0; round < kRounds; ++round) {
      const int id = 1 + (round + number) % kOrders;
      const auto observing = platform::services().notificationCenter->addObserver(
          SDKNotification::orderUpdated, [](const platform::Notification& notification) {
            (*notification.objectAs<OrderPtr>())->progress();
          });
      orders.fetch([&](const auto& all, const auto&) {
        ++reported;
        if (all) ++fetched;
      });
      orders.create({.siteID = 42, .partnerIdentifier = "P"}, report);
      orders.event(id, static_cast<CustomerState>(round % 5), report);
      orders.rateOrder(id, round, "comment", report);
      Ovinta::customer().create({.name = "Ann"}, true, true, report);
      asked += id == kOrders ? 3 : 5;

      Ovinta::setPushToken("token " + std::to_string(round));
      Ovinta::handleRemoteNotification(
          {{"order_id", std::to_string(id)}, {"customer_state", "nearby"}});
      UserDefaultsKey::customerPhone.set(Ovinta::pushToken());
      const auto all = orders.all().value_or(OrderList{});
      for (const OrderPtr& order : all) {
        order->siteDistance({});
        order->setPickupType(order->pushToken());
      }
      const auto last = orders.lastFetch();
      orders.setClosed(orders.closed());
    }
  };
  run(work, [&] { return reported == asked && syncs() == *updates; });
  EXPECT_GE(*updates, fetched) << "pushes fetch without a callback";
  EXPECT_GT(fetched, 0);
  expectOrdersOfTheService();
}

TEST(ExitingProcess, EndsCleanlyWithRequestsUnderWay) {
  const TemporaryDirectory directory;
  LocalServer silent([](ServerConnection& connection) { connection.waitForClose(); });
  // From the main thread, from an operation and from the URL session.
  for (const char* lastURL : {"", "not a URL", "http://127.0.0.1:1/"}) {
    for (int run = 0; run < 15; ++run) {
      const auto result =
          runCommand({OVINTA_SDK_EXIT_HELPER, silent.url(), directory.path(), lastURL});
      ASSERT_EQ(result.exitCode, 0) << lastURL << ", run " << run << ": " << result.output;
    }
  }
}

}  // namespace
}  // namespace ovinta::test
