#include <gmock/gmock.h>
#include <net/if.h>
#include <net/route.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/Linux.h"
#include "platform/linux/main/GLibMainQueue.h"
#include "platform/linux/network/GioNetworkMonitor.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/platform/portable/delivery/DeliveryRequests.h"
#include "tests/support/DeathTest.h"
#include "tests/support/LocalServer.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::linuxos {
namespace {

using testing::ElementsAre;

/// Leaves the process without a network service, so that what the monitor knows is the kernel's.
class WithoutService {
 private:
  ovinta::test::ScopedVariable system_{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere"};
  ovinta::test::ScopedVariable session_{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"};
};

/// Runs the main loop until a monitor has told something that many times, and gives it.
class ToldNetworks {
 public:
  ToldNetworks() : monitor_(std::make_unique<GioNetworkMonitor>(mainQueue_)) {
    monitor_->start([this](bool isAvailable) {
      EXPECT_EQ(std::this_thread::get_id(), thread_);
      told_.push_back(isAvailable);
      quitMainLoop();
    });
  }

  /// What is told next.
  bool next() {
    const std::size_t before = told_.size();
    while (told_.size() == before) runMainLoop();
    return told_.at(before);
  }

  /// What was told until the queue is through, beginning with the given number.
  std::vector<bool> restOf(std::size_t first) {
    mainQueue_->async([] { quitMainLoop(); });
    runMainLoop();
    return {told_.begin() + static_cast<std::ptrdiff_t>(first), told_.end()};
  }

  void stop() { monitor_.reset(); }

 private:
  const std::thread::id thread_ = std::this_thread::get_id();
  const std::shared_ptr<MainQueue> mainQueue_ =
      std::make_shared<GLibMainQueue>(GLibMainQueue::Options{});
  std::vector<bool> told_;
  std::unique_ptr<GioNetworkMonitor> monitor_;
};

TEST(GioNetworkMonitorTest, TellsOnceWhatIsKnownAndStopsCleanlyAtAnyMoment) {
  const WithoutService kernelAlone;
  ToldNetworks networks;
  networks.next();
  networks.stop();
  EXPECT_THAT(networks.restOf(1), testing::IsEmpty());

  const auto mainQueue = std::make_shared<GLibMainQueue>(GLibMainQueue::Options{});
  const auto handler = std::make_shared<int>();
  for (int i = 0; i < 20; ++i) {
    GioNetworkMonitor monitor(mainQueue);
    if (i > 0) monitor.start([handler](bool) { ADD_FAILURE() << "after the monitor's end"; });
  }
  EXPECT_EQ(handler.use_count(), 1);
  mainQueue->async([] { quitMainLoop(); });
  runMainLoop();
}

/// Has what goes to that network, in the notation of a route, go to the loopback device.
bool addRoute(int socket, std::uint32_t network, std::uint32_t mask) {
  rtentry route{};
  const auto set = [](sockaddr& address, std::uint32_t number) {
    sockaddr_in internet{};
    internet.sin_family = AF_INET;
    internet.sin_addr.s_addr = htonl(number);
    std::memcpy(&address, &internet, sizeof internet);
  };
  std::string device = "lo";
  set(route.rt_dst, network);
  set(route.rt_genmask, mask);
  route.rt_flags = RTF_UP;
  route.rt_dev = device.data();
  return ioctl(socket, SIOCADDRT, &route) == 0;
}

/// In networks of its own, which begin with none.
void followNetworks() {
  const WithoutService kernelAlone;
  ToldNetworks networks;
  std::vector<bool> told{networks.next()};
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq up{};
  std::strcpy(up.ifr_name, "lo");
  up.ifr_flags = IFF_UP;
  EXPECT_EQ(ioctl(socket, SIOCSIFFLAGS, &up), 0);
  EXPECT_TRUE(addRoute(socket, 0, 0));
  while (!told.back()) told.push_back(networks.next());
  EXPECT_FALSE(told.front());
  EXPECT_TRUE(addRoute(socket, 0x0A000000, 0xFF000000));
  EXPECT_TRUE(networks.next()) << "another network, and so told again";
  close(socket);
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST(GioNetworkMonitorTest, TellsEachChangeOfTheNetworks) {
  const ovinta::test::DeathTest inAProcessOfItsOwn;
  const auto follow = [] {
    const int own = geteuid() == 0 ? CLONE_NEWNET : CLONE_NEWUSER | CLONE_NEWNET;
    // Where the system lets nobody do that there is nothing to be seen.
    if (unshare(own) != 0) _exit(0);
    followNetworks();
  };
  EXPECT_EXIT(follow(), testing::ExitedWithCode(0), "");
}

/// Ends the main loop when delivery waits for the network.
struct Wait final : DeliveryDelegate {
  void deliveryWaitsForNetwork(const DeliveryAccount& account) override {
    EXPECT_EQ(account.waiting, 1U);
    quitMainLoop();
  }
};

TEST(LinuxDeliveryTest, SendsKeysAndReportsALogoutWhereAnswersAreReported) {
  setenv("no_proxy", "*", 1);
  const WithoutService kernelAlone;
  const ovinta::test::TemporaryDirectory directory;
  std::promise<std::vector<std::string>> sent;
  std::mutex mutex;
  std::vector<std::string> keys;
  const ovinta::test::LocalServer server(
      ovinta::test::LocalServer::answering([&](const ovinta::test::ReceivedRequest& request) {
        const std::lock_guard lock(mutex);
        for (const auto& field : request.headers) {
          if (field.name == "Idempotency-Key") keys.push_back(field.value);
        }
        if (keys.size() < 2) return ovinta::test::httpAnswer("200 OK", "{}");
        sent.set_value(keys);
        return ovinta::test::httpAnswer("503 Service Unavailable", "", "Retry-After: 3000\r\n");
      }));
  const Services made =
      makeServices({.applicationID = "tests",
                    .dataDirectory = directory.path(),
                    .log = std::make_shared<simulation::RecordingLog>(),
                    .delivery = DeliveryOptions{.delegate = std::make_shared<Wait>()}});
  made.settings->set("Customer Token", "alice");
  using Ending = std::pair<std::thread::id, std::string>;
  const auto send = [&](int sequence) {
    auto promise = std::make_shared<std::promise<Ending>>();
    made.urlSession->startDataTask(
        test::eventRequest(1, "state_change", sequence, "alice", server.url("")),
        [promise](const auto&, const auto& response, const auto& error) {
          promise->set_value(
              {std::this_thread::get_id(),
               error ? error->localizedDescription : std::to_string(response->statusCode)});
        });
    return promise->get_future();
  };
  const auto [thread, status] = send(1).get();
  EXPECT_EQ(status, "200");
  auto waiting = send(2);
  const auto both = sent.get_future().get();
  for (const auto& key : both) {
    EXPECT_THAT(key, testing::MatchesRegex(".{8}-.{4}-4.{3}-[89ABab].{3}-.{12}"));
  }
  EXPECT_NE(both.front(), both.back());
  runMainLoop();
  made.settings->set("Customer Token", "bob");
  EXPECT_EQ(waiting.get(), Ending(thread, "The customer has signed out."));
  EXPECT_NE(thread, std::this_thread::get_id());
  const auto account = made.delivery->account();
  EXPECT_EQ(summary(account),
            "made 2 = delivered 1 + waiting 0 + superseded 0 + dropped 1 (signed out 1)");
  EXPECT_EQ(account.storageFailure, std::nullopt);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
