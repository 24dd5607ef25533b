// What delivery costs: while the network is there, per event that is kept, and in an outage.
#include <malloc.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "bench/KeepAliveServer.h"
#include "bench/Processor.h"
#include "bench/Row.h"
#include "platform/linux/http/CurlURLSession.h"
#include "platform/linux/main/SystemClock.h"
#include "platform/linux/storage/SQLiteOutbox.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/InMemoryOutbox.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/http/Answer.h"
#include "platform/simulation/http/SimulatedNetworkMonitor.h"
#include "platform/simulation/time/VirtualTime.h"
#include "replay/TemporaryDirectory.h"

namespace ovinta::bench {
namespace {

using namespace std::chrono_literals;
using namespace platform;

constexpr Date kStart{std::chrono::seconds{1614889800}};

/// An event of the library, as it comes to the session.
URLRequest eventRequest(const std::string& service, std::int64_t orderID) {
  URLRequest request{.url = {service + "m/v1/events"}, .method = "POST"};
  request.headers = {{"Accept", "application/json"},
                     {"Content-Type", "application/json"},
                     {"Authorization", "Token token=\"0123456789abcdef0123456789abcdef\""},
                     {"App-Token", "0123456789abcdef0123456789abcdef"}};
  request.body = R"({"data":{"order_id":)" + std::to_string(orderID) +
                 R"(,"event_type":"state_change","customer_state":"arrived",)"
                 R"("timestamp":"2021-03-04T20:30:00Z","sdk_version":"9.4.8"}})";
  return request;
}

URLRequest fetchRequest(const std::string& service) {
  auto request = eventRequest(service, 1);
  request.url.text = service + "m/v1/orders";
  request.method = "GET";
  request.body = std::nullopt;
  return request;
}

/// Has the services deliver, in the time of `time`, with a customer who is signed in.
Services delivering(std::shared_ptr<URLSession> session, simulation::VirtualTime& time,
                    std::shared_ptr<Outbox> outbox, std::uint64_t seed = 1) {
  Services services;
  services.urlSession = std::move(session);
  services.clock = time.clock();
  services.mainQueue = time.mainQueue();
  services.log = std::make_shared<simulation::RecordingLog>();
  services.settings = portable::makeInMemorySettingsStore();
  services.settings->set("Customer Token", "0123456789abcdef0123456789abcdef");
  portable::addDelivery(
      services, {},
      {.outbox = std::move(outbox),
       .network = std::make_shared<simulation::SimulatedNetworkMonitor>(time.mainQueue()),
       .uptime = [clock = time.clock()] { return clock->now() - kStart; },
       .random = std::mt19937_64(seed),
       .onCallbackThread = [queue = time.mainQueue()](auto task) { queue->async(task); }});
  return services;
}

/// A device that sends requests one after the other to a service that is there.
class Sender {
 public:
  explicit Sender(bool isDelivering) {
    auto session = std::make_shared<linuxos::CurlURLSession>();
    session_ =
        isDelivering
            ? delivering(session, time_, std::make_shared<simulation::InMemoryOutbox>()).urlSession
            : session;
  }

  bool run(const URLRequest& request) {
    std::promise<bool> answered;
    session_->startDataTask(request, [&](const auto&, const auto& response, const auto&) {
      answered.set_value(response && response->statusCode == 200);
    });
    return answered.get_future().get();
  }

 private:
  simulation::VirtualTime time_{kStart};
  std::shared_ptr<URLSession> session_;
};

std::string service() {
  static const KeepAliveServer server("{}");
  return server.url();
}

template <bool kIsDelivering, bool kIsEvent>
void request(benchmark::State& state) {
  const OnProcessor client(0);
  static Sender sender(kIsDelivering);
  static const auto sent = kIsEvent ? eventRequest(service(), 1) : fetchRequest(service());
  for (auto _ : state) {
    if (!sender.run(sent)) return state.SkipWithError("a request was not answered");
  }
}

/// What an event costs that is written and, when it has arrived, removed.
void writeOutbox(benchmark::State& state) {
  static const replay::TemporaryDirectory directory;
  static linuxos::SQLiteOutbox outbox(directory.path() / linuxos::kOutboxFile,
                                      std::make_shared<simulation::RecordingLog>());
  OutboxEntry entry{.number = 0, .made = kStart, .customer = 1, .request = eventRequest("", 1)};
  for (auto _ : state) {
    ++entry.number;
    if (outbox.write({.added = {entry}}) || outbox.write({.removed = {entry.number}})) {
      return state.SkipWithError("the outbox could not be written");
    }
  }
}

constexpr std::int64_t kWaiting = 1000;

/// Reaches nobody.
struct NoService final : URLSession {
  explicit NoService(std::shared_ptr<MainQueue> mainQueue) : mainQueue(std::move(mainQueue)) {}
  void startDataTask(URLRequest, Completion completion) override {
    ++tries;
    mainQueue->async([completion = std::move(completion)] {
      completion(std::nullopt, std::nullopt, simulation::Answer::noConnection().error);
    });
  }
  const std::shared_ptr<MainQueue> mainQueue;
  int tries = 0;
};

/// A device in an outage, with so many events of as many orders that wait.
struct Outage {
  explicit Outage(std::shared_ptr<Outbox> outbox, std::int64_t waiting = kWaiting,
                  std::uint64_t seed = 1)
      : services(delivering(http, time, std::move(outbox), seed)) {
    for (std::int64_t order = 1; order <= waiting; ++order) {
      services.urlSession->startDataTask(eventRequest("https://service.test/", order),
                                         [](const auto&...) {});
    }
    time.runUntilIdle();
  }

  simulation::VirtualTime time{kStart};
  const std::shared_ptr<NoService> http = std::make_shared<NoService>(time.mainQueue());
  Services services;
};

/// The memory that the waiting events take, each with a callback of an application.
std::optional<double> memoryOfWaiting() {
  const replay::TemporaryDirectory directory;
  const auto before = mallinfo2().uordblks;
  const Outage outage(std::make_shared<linuxos::SQLiteOutbox>(
      directory.path() / linuxos::kOutboxFile, std::make_shared<simulation::RecordingLog>()));
  if (outage.services.delivery->account().waiting != kWaiting) return {};
  return static_cast<double>(mallinfo2().uordblks - before) / 1024;
}

/// The room of the outbox's files while they wait.
std::optional<double> diskOfWaiting() {
  const replay::TemporaryDirectory directory;
  const Outage outage(std::make_shared<linuxos::SQLiteOutbox>(
      directory.path() / linuxos::kOutboxFile, std::make_shared<simulation::RecordingLog>()));
  std::uintmax_t bytes = 0;
  for (const auto& file : std::filesystem::directory_iterator(directory.path())) {
    bytes += file.file_size();
  }
  return bytes > 0 ? std::optional(static_cast<double>(bytes) / 1024) : std::nullopt;
}

/// How often a device is woken, in the mean of many, in an hour in which the service is not there,
/// though the network claims to be.
std::optional<double> wakesInAnOutage() {
  constexpr int kDevices = 200;
  int wakes = 0;
  for (int i = 0; i < kDevices; ++i) {
    Outage outage(std::make_shared<simulation::InMemoryOutbox>(), 1 + i % 50,
                  static_cast<std::uint64_t>(i));
    const int before = outage.http->tries;
    outage.time.advance(1h);
    wakes += outage.http->tries - before;
  }
  return static_cast<double>(wakes) / kDevices;
}

const TimeRow kFetch{"delivery/a fetch, on to off", &request<false, false>, &request<true, false>,
                     1.1};
const TimeRow kEvent{"delivery/an event, on to off, kept in memory", &request<false, true>,
                     &request<true, true>, 1.1};
const TimeRow kWrite{"delivery/an event written to the outbox and removed", &writeOutbox, 20ms};
const FigureRow kMemory{"delivery/memory of 1,000 that wait", "KiB", nullptr, &memoryOfWaiting,
                        4096};
const FigureRow kDisk{"delivery/disk of 1,000 that wait", "KiB", nullptr, &diskOfWaiting, 8192};
const FigureRow kWakes{"delivery/wakes in an outage of an hour", "wakes", nullptr, &wakesInAnOutage,
                       12};

}  // namespace
}  // namespace ovinta::bench
