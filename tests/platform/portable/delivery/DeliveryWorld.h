#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/JSONText.h"
#include "platform/portable/Portable.h"
#include "platform/simulation/InMemoryOutbox.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/http/Answer.h"
#include "platform/simulation/http/SimulatedNetworkMonitor.h"
#include "platform/simulation/time/VirtualTime.h"
#include "tests/platform/portable/delivery/DeliveryRequests.h"

namespace ovinta::platform::test {

using namespace std::chrono_literals;
using simulation::Answer;

inline constexpr Date kDeliveryStart{std::chrono::seconds{1614889800}};

/// A clock that somebody sets, now and then.
struct SetClock final : Clock {
  explicit SetClock(std::shared_ptr<Clock> base) : base(std::move(base)) {}
  Date now() const override { return base->now() + offset; }
  std::shared_ptr<Clock> base;
  TimeInterval offset{};
};

/// The service and the way to it. It has each effect once for a key, and notes them in their order.
struct EventService {
  /// What happens to the requests that are sent.
  enum class Way { open, noNetwork, lostRequest, lostAnswer, tooMany, unavailable };

  struct Effect {
    std::int64_t orderID;
    std::int64_t sequence;
  };

  Answer answer(const URLRequest& request) {
    ++tries;
    if (way == Way::noNetwork) return Answer::noConnection();
    if (way == Way::lostRequest) return Answer::lostConnection();
    if (way == Way::tooMany) return Answer::json(429, "").withHeader("Retry-After", "30");
    if (way == Way::unavailable) return Answer::json(503, "");
    takeIn(request);
    return way == Way::lostAnswer ? Answer::lostConnection() : Answer::json(200, "{}");
  }

  void takeIn(const URLRequest& request) {
    const auto field = std::ranges::find(request.headers, "Idempotency-Key", &HeaderField::name);
    const std::string key = field == request.headers.end() ? "" : field->value;
    for (const auto& [name, value] : request.headers) hasEmptyField |= value.empty();
    if (!keys.insert(key).second) return;
    const auto body = parseJSON(*request.body);
    const auto& data = *find<Dictionary>(*body->as<Dictionary>(), "data");
    effects.push_back(
        {*find<std::int64_t>(data, "order_id"), *find<std::int64_t>(data, "eta_seconds")});
  }

  Way way = Way::open;
  std::vector<Effect> effects;
  std::set<std::string> keys;
  int tries = 0;
  bool hasEmptyField = false;
};

/// When a process ends. What a dead one does has no effect.
struct Fate {
  /// To be called where the process may end.
  void pass() {
    if (left > 0 && --left == 0) isDead = true;
  }
  /// The number of places that it still lives to pass; 0 for all.
  int left = 0;
  bool isDead = false;
};

/// Sends requests to the service, which gets them at once, and answers after a while.
struct ServiceSession final : URLSession {
  ServiceSession(EventService& service, Fate& fate, std::shared_ptr<MainQueue> mainQueue)
      : service(service), fate(fate), mainQueue(std::move(mainQueue)) {}

  void startDataTask(URLRequest request, Completion completion) override {
    fate.pass();
    if (fate.isDead) return;
    mainQueue->asyncAfter(100ms,
                          [answer = service.answer(request), completion = std::move(completion)] {
                            completion(answer.data, answer.response, answer.error);
                          });
    fate.pass();
  }

  EventService& service;
  Fate& fate;
  std::shared_ptr<MainQueue> mainQueue;
};

/// An outbox in memory that may fail, and which outlives what uses it.
struct FailingOutbox final : Outbox {
  std::optional<std::vector<OutboxEntry>> load() override {
    return isUnreadable ? std::nullopt : base.load();
  }
  std::vector<OutboxEntry> kept() { return *base.load(); }
  std::optional<std::string> write(const Changes& changes) override {
    fate.pass();
    if (fate.isDead) return std::nullopt;
    ++writes;
    if (isBroken) return "the disk is full";
    auto failure = base.write(changes);
    fate.pass();
    return failure;
  }

  simulation::InMemoryOutbox base;
  bool isBroken = false;
  bool isUnreadable = false;
  int writes = 0;
  Fate fate;
};

/// A device with delivery on, in virtual time, whose process can end and begin again.
class DeliveryWorld : public DeliveryDelegate {
 public:
  explicit DeliveryWorld(std::uint64_t seed = 1, DeliveryOptions options = {})
      : random_(seed), options_(std::move(options)) {
    options_.appToken = "app";
    // The world outlives the services that use it.
    options_.delegate = std::shared_ptr<DeliveryDelegate>(std::shared_ptr<void>(), this);
    signIn("alice");
    launch();
  }

  ~DeliveryWorld() override { quit(); }
  DeliveryWorld(const DeliveryWorld&) = delete;
  DeliveryWorld& operator=(const DeliveryWorld&) = delete;

  void launch() {
    http = std::make_shared<ServiceSession>(service, outbox->fate, time.mainQueue());
    network = std::make_shared<simulation::SimulatedNetworkMonitor>(time.mainQueue());
    network->setAvailable(service.way != EventService::Way::noNetwork);
    services = {};
    services.clock = clock;
    services.log = log;
    services.mainQueue = time.mainQueue();
    services.settings = settings;
    services.urlSession = http;
    services.operationQueues = portable::makeOperationQueueFactory();
    portable::addDelivery(
        services, options_,
        {.outbox = outbox,
         .network = network,
         .uptime = [clock = time.clock()] { return clock->now() - kDeliveryStart; },
         .random = [this] { return random_(); },
         .onCallbackThread =
             [mainQueue = time.mainQueue()](auto task) { mainQueue->async(std::move(task)); }});
  }
  /// Ends the process at once: what is under way is dropped. Its account has to add up.
  void quit() {
    EXPECT_TRUE(!services.delivery || account().isBalanced()) << summary(account());
    services = {};
  }

  void setWay(EventService::Way way) {
    service.way = way;
    network->setAvailable(way != EventService::Way::noNetwork);
  }

  void signIn(const std::string& token) {
    (services.settings ? services.settings : settings)->set("Customer Token", token);
  }
  void signOut() { services.settings->wipe("Customer Token"); }

  /// Sends a request; `ended` counts how often the completion was called, by request.
  void send(URLRequest request) {
    const std::size_t place = ended.size();
    ended.push_back(0);
    endings.emplace_back();
    services.urlSession->startDataTask(
        std::move(request), [this, place](auto data, auto response, auto error) {
          ++ended[place];
          endings[place] = {std::move(data), std::move(response), std::move(error)};
        });
  }

  DeliveryAccount account() const { return services.delivery->account(); }

  void deliveryWaitsForNetwork(const DeliveryAccount&) override { told += "waits "; }
  void deliverySentLate(const LateDelivery& late) override {
    told += "late:" + std::to_string(late.orderID) + ":" + late.eventType + " ";
  }
  void deliveryResumed(const DeliveryAccount& account) override {
    told += account.isBalanced() ? "resumed " : "unbalanced ";
  }

  simulation::VirtualTime time{kDeliveryStart};
  std::shared_ptr<SetClock> clock = std::make_shared<SetClock>(time.clock());
  std::shared_ptr<simulation::RecordingLog> log = std::make_shared<simulation::RecordingLog>();
  std::shared_ptr<SettingsStore> settings = portable::makeInMemorySettingsStore();
  std::shared_ptr<FailingOutbox> outbox = std::make_shared<FailingOutbox>();
  std::shared_ptr<ServiceSession> http;
  std::shared_ptr<simulation::SimulatedNetworkMonitor> network;
  EventService service;
  Services services;
  std::vector<int> ended;
  std::vector<Answer> endings;
  std::string told;

 private:
  std::mt19937_64 random_;
  DeliveryOptions options_;
};

}  // namespace ovinta::platform::test
