#include "cli/demo/TunnelRun.h"

#include <httplib.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/ClientServices.h"
#include "cli/client/HumanText.h"
#include "cli/demo/DemoOrder.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;
using platform::Dictionary;

ClientOptions inDirectory(ClientOptions options, const std::filesystem::path& directory) {
  options.dataDirectory = directory;
  return options;
}

/// What the body of a position has, and no other.
constexpr std::string_view kPosition = R"("event_type":"location_update")";

std::string timeText(platform::Date date) { return utcText(date, "%H:%M:%S"); }

}  // namespace

TunnelRun::TunnelRun(const DemoOptions& options, platform::simulation::Trip trip, bool isDelivered)
    : token_(options.service.token) {
  auto services = clientServices(inDirectory(options.service, directory_.path()));
  session_ =
      std::make_shared<ObservedURLSession>(services.urlSession, [this](const Exchange& exchange) {
        // Of what has left the device the service has learned, though the answer was lost.
        if (exchange.status != 200 && exchange.failure.empty()) return;
        const std::lock_guard lock(mutex_);
        learned_.push_back({exchange, device_->time().now()});
      });
  services.urlSession = session_;
  device_ = std::make_unique<TripDevice>(
      std::move(services), trip.start, [](const Exchange&) {},
      isDelivered ? std::optional(platform::DeliveryOptions()) : std::nullopt);
  player_ = std::make_unique<platform::simulation::TripPlayer>(device_->simulation(),
                                                               std::move(trip), options.trip.seed);
}

TunnelRun::~TunnelRun() { session_->disconnect(); }

Dictionary TunnelRun::run() {
  startService();
  placeOrder();
  player_->start();
  pass(5s);
  report(CustomerState::enRoute);
  driveUntil(kNearby);
  report(CustomerState::nearby);
  driveUntil(kArrived);
  report(CustomerState::arrived);
  pass(30s);
  report(CustomerState::waiting);
  loseAnAnswer();
  while (!player_->isFinished() || !device_->simulation().network().isAvailable()) pass(1s);
  pass(20s);
  report(CustomerState::completed);
  rate();
  pass(60s);
  return result();
}

void TunnelRun::startService() {
  sandbox_ = std::make_unique<sandbox::Sandbox>(
      sandbox::Options{.now = [this] { return device_->time().now(); }});
  if (const auto error = sandbox_->start()) throw std::runtime_error(*error);
  UserDefaultsKey::apiBase.set(sandbox_->baseURL());
  Ovinta::configure({{"token", token_}});
}

void TunnelRun::placeOrder() {
  await([](const OrderCallback& callback) {
    Ovinta::customer().create(
        demoCustomer(), CustomerConsent{.termsOfService = true, .ageVerification = true},
        [callback](const auto&, const ErrorPtr& error) { callback(nullptr, error); });
  });
  await([](const OrderCallback& callback) {
    Ovinta::orders().create(kSite, "demo-1001", demoCustomer(), std::nullopt, callback);
  });
  await([](const OrderCallback& callback) {
    Ovinta::orders().fetch([callback](const auto& orders, const ErrorPtr& error) {
      callback(orders && !orders->empty() ? orders->front() : nullptr, error);
    });
  });
  if (!order_) throw std::runtime_error("the service does not list the order");
}

void TunnelRun::loseAnAnswer() {
  const std::string fault = R"({"data": {"fault": "answer_lost", "count": 1}})";
  const auto answer = httplib::Client(sandbox_->baseURL())
                          .Put("/sandbox/faults/POST/m/v1/events", fault, "application/json");
  if (!answer || answer->status != 200) {
    throw std::runtime_error("the service does not take the fault that loses an answer");
  }
}

void TunnelRun::report(CustomerState state) {
  steps_.push_back({OrderEventType::stateChange, std::string(name(state)), device_->time().now()});
  Ovinta::orders().event(*order_, state);
  pass(1s);
}

void TunnelRun::rate() {
  steps_.push_back({OrderEventType::customerRating, "5", device_->time().now()});
  Ovinta::orders().rateOrder(order_->id, 5, std::nullopt);
}

void TunnelRun::pass(std::chrono::seconds interval) { device_->time().advance(interval); }

void TunnelRun::driveUntil(double metres) {
  const auto distance = [this] {
    return order_->siteDistance({.coordinate = *player_->position()}).value_or(0);
  };
  while (distance() >= metres) {
    if (player_->isFinished()) throw std::runtime_error("the trip does not lead to the site");
    pass(1s);
  }
}

void TunnelRun::await(const std::function<void(OrderCallback)>& start) {
  struct Answer {
    bool came = false;
    OrderPtr order = {};
    ErrorPtr error = {};
  };
  const auto answer = std::make_shared<Guarded<Answer>>();
  start([answer](OrderPtr order, ErrorPtr error) {
    answer->set({.came = true, .order = std::move(order), .error = std::move(error)});
  });
  if (!device_->time().waitUntil([&] { return answer->get().came; }, kPatience)) {
    throw std::runtime_error("no answer came");
  }
  const Answer result = answer->get();
  if (result.error) throw std::runtime_error(result.error->errorDescription());
  if (result.order) order_ = result.order;
}

Dictionary TunnelRun::counts() const {
  const auto answer = httplib::Client(sandbox_->baseURL()).Get("/sandbox/requests");
  const auto document = answer ? platform::parseJSON(answer->body) : std::nullopt;
  const auto* fields = document ? document->as<Dictionary>() : nullptr;
  const auto* requests = fields ? platform::find<platform::List>(*fields, "data") : nullptr;
  if (!requests) throw std::runtime_error("the service does not tell its requests");
  std::int64_t positions = 0;
  std::int64_t repetitions = 0;
  for (const platform::Value& entry : *requests) {
    const auto& request = *entry.as<Dictionary>();
    if (platform::find<bool>(request, "repetition")) {
      ++repetitions;
    } else if (platform::find<std::string>(request, "body")->find(kPosition) != std::string::npos) {
      ++positions;
    }
  }
  return {{"positions", positions}, {"repetitions", repetitions}};
}

Dictionary TunnelRun::result() const {
  Dictionary result = counts();
  platform::List steps;
  const std::lock_guard lock(mutex_);
  for (const Step& step : steps_) {
    Dictionary row{{"step", step.type == OrderEventType::customerRating ? "rating" : step.content},
                   {"made", timeText(step.made)}};
    const auto found = std::ranges::find_if(learned_, [&](const Learned& learned) {
      return learned.exchange.eventType == step.type && learned.exchange.content == step.content;
    });
    if (found != learned_.end()) row.emplace("learned", timeText(found->date));
    steps.emplace_back(std::move(row));
  }
  result.emplace("steps", std::move(steps));
  if (const auto& delivery = platform::services().delivery) {
    const platform::DeliveryAccount account = delivery->account();
    result.emplace("account", platform::summary(account));
    result.emplace("isBalanced", account.isBalanced() && account.waiting == 0);
  }
  return result;
}

}  // namespace ovinta::cli
