#include "cli/demo/Demo.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#include <utility>

#include "OvintaSDK/core/Guarded.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

DemoOptions inDirectory(DemoOptions options, const std::filesystem::path& directory) {
  options.service.dataDirectory = directory;
  return options;
}

std::string failureText(const OvintaError& error) {
  return error.title() + ": " + error.errorDescription();
}

}  // namespace

Demo::Demo(DemoOptions options, platform::simulation::Trip trip, Interruption& interruption)
    : options_(inDirectory(std::move(options), directory_.path())),
      interruption_(interruption),
      timeline_(options_.service.json, [this] { return device_->now(); }),
      device_(makeDemoDevice(options_, std::move(trip), interruption,
                             [this](const Exchange& exchange) { note(exchange); })),
      notificationLines_(timeline_) {
  observeLocationSettings();
}

Demo::~Demo() = default;

bool Demo::run() {
  for (const Step& step : steps()) {
    timeline_.begin(step.title);
    Failure failure = (this->*step.run)();
    pass(1s);
    if (failure) {
      timeline_.add("failed", std::string(step.title) + ": " + *failure);
      summarize(false);
      return false;
    }
  }
  summarize(true);
  return true;
}

void Demo::observeLocationSettings() {
  device_->location().onChanged([this] {
    const std::string before =
        std::exchange(accuracy_, accuracyText(device_->location().observed()));
    if (accuracy_ == before) return;
    updateSituation();
    timeline_.add("accuracy", accuracy_.empty() ? "positions are no longer asked for" : accuracy_);
  });
}

void Demo::note(const Exchange& exchange) {
  exchanges_.add(exchange);
  timeline_.add(exchange);
}

void Demo::pass(std::chrono::seconds interval) {
  for (auto passed = 0s; passed < interval; passed += 1s) {
    device_->passSecond();
    updateSituation();
    interruption_.check();
  }
}

void Demo::updateSituation() {
  timeline_.setSituation(
      {.distance = distance(), .accuracy = accuracyText(device_->location().observed())});
}

std::optional<double> Demo::distance() const {
  const auto position = device_->position();
  if (!order_ || !position) return std::nullopt;
  return order_->siteDistance({.coordinate = *position});
}

Demo::Failure Demo::driveUntil(double metres) {
  while (distance().value_or(metres) >= metres) {
    if (device_->isTripOver()) {
      const auto rest = std::lround(distance().value_or(0));
      return "the trip ended " + std::to_string(rest) + " m from the site";
    }
    pass(1s);
  }
  return std::nullopt;
}

bool Demo::comesTrue(const std::function<bool()>& condition) {
  const bool holds = device_->waitUntil(condition);
  interruption_.check();
  return holds;
}

Demo::Failure Demo::awaitOrder(const std::function<void(OrderCallback)>& start) {
  struct Answer {
    bool came = false;
    OrderPtr order = {};
    ErrorPtr error = {};
  };
  const auto answer = std::make_shared<Guarded<Answer>>();
  start([answer](OrderPtr order, ErrorPtr error) {
    answer->set({.came = true, .order = std::move(order), .error = std::move(error)});
  });
  if (!comesTrue([&] { return answer->get().came; })) return "no answer came";
  const Answer result = answer->get();
  if (result.error) return failureText(*result.error);
  if (result.order) order_ = result.order;
  return std::nullopt;
}

Demo::Failure Demo::awaitFetch() {
  return awaitOrder([](const OrderCallback& callback) {
    Ovinta::orders().fetch([callback](const auto& orders, const ErrorPtr& error) {
      callback(orders && !orders->empty() ? orders->front() : nullptr, error);
    });
  });
}

}  // namespace ovinta::cli
