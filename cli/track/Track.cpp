#include "cli/track/Track.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <utility>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/ClientServices.h"
#include "cli/client/PendingNotifications.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

/// Long enough for what the last position causes.
constexpr int kSecondsAfter = 10;

OrderList openOrders() { return Ovinta::orders().open().value_or(OrderList{}); }

std::string describe(const platform::Location& location) {
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%.5f, %.5f within %.0f m", location.coordinate.latitude,
                location.coordinate.longitude, location.horizontalAccuracy);
  return text.data();
}

std::string metres(double distance) { return std::to_string(std::lround(distance)) + " m"; }

}  // namespace

Track::Track(const TrackOptions& options, platform::simulation::Trip trip,
             Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      output_(options.client.json),
      timeline_(options.client.json, [this] { return device_.time().now(); }),
      base_(clientServices(options.client)),
      device_(base_, std::chrono::floor<std::chrono::seconds>(base_.clock->now()),
              [this](const Exchange& exchange) { note(exchange); }),
      player_(device_.simulation(), std::move(trip), options.trip.seed) {
  configureLibrary(options.client);
}

Track::~Track() = default;

ExitCode Track::run() {
  if (const auto outcome = fetchOrders()) return *outcome;
  takeArmedNotifications();
  drive();
  const ExitCode code = summarize();
  interruption_.check();
  return code;
}

std::optional<ExitCode> Track::fetchOrders() {
  struct Answer {
    bool came = false;
    ErrorPtr error = {};
  };
  const auto answer = std::make_shared<Guarded<Answer>>();
  Ovinta::orders().fetch([answer](const auto& /*orders*/, const ErrorPtr& error) {
    answer->set({.came = true, .error = error});
  });
  device_.time().waitUntil([&] { return answer->get().came || interruption_.happened(); },
                           kPatience);
  interruption_.check();
  const auto [came, error] = answer->get();
  if (error) {
    output_.print(*error);
    return ExitCode::failure;
  }
  if (!came) {
    std::cerr << "The orders cannot be fetched: no answer came.\n";
    return ExitCode::noCallback;
  }
  if (!openOrders().empty()) return std::nullopt;
  output_.printFailure("Nothing to Follow", "No order of the customer is open.");
  return ExitCode::failure;
}

void Track::takeArmedNotifications() {
  auto& device = device_.simulation().notifications();
  for (const auto& request : pendingNotifications(*base_.userNotifications)) {
    device.add(request, {});
  }
  device.onFired([this](const platform::UserNotificationRequest& request) {
    base_.userNotifications->removePendingNotificationRequests({request.identifier});
    add("shown", request.content.title + ": " + request.content.body,
        {{"identifier", request.identifier}});
  });
}

void Track::drive() {
  timeline_.begin("Following " + std::to_string(openOrders().size()) + " open order(s)");
  observe();
  player_.start();
  int secondsAfter = 0;
  while (!openOrders().empty() && !interruption_.happened() && secondsAfter < kSecondsAfter) {
    passSecond();
    if (player_.isFinished()) ++secondsAfter;
  }
  progress_.clear();
  // Answered once the removals before are done.
  pendingNotifications(*base_.userNotifications);
}

void Track::passSecond() {
  device_.time().advance(1s);
  updateSituation();
  progress_.show(std::to_string(std::lround(player_.distanceAlong())) + " m driven, " +
                 metres(nearestSiteDistance().value_or(0)) + " to the site");
  interruption_.happened(options_.trip.pace /
                         std::chrono::duration<double>(player_.duration()).count());
}

void Track::updateSituation() {
  const std::string accuracy = device_.accuracyText();
  timeline_.setSituation({.distance = nearestSiteDistance(), .accuracy = accuracy});
  if (std::exchange(accuracy_, accuracy) != accuracy) {
    add("accuracy", accuracy.empty() ? "positions are no longer asked for" : accuracy);
  }
  const std::size_t regions = device_.simulation().location().rangedRegions().size();
  if (std::exchange(rangedRegions_, regions) != regions) {
    add("beacons", "listening for those of " + std::to_string(regions) + " region(s)");
  }
}

std::optional<double> Track::nearestSiteDistance() const {
  std::optional<double> nearest;
  const auto position = player_.position();
  if (!position) return nearest;
  for (const OrderPtr& order : openOrders()) {
    const auto distance = order->siteDistance({.coordinate = *position});
    if (distance && !(nearest && *nearest <= *distance)) nearest = distance;
  }
  return nearest;
}

void Track::observe() {
  notificationLines_.emplace(timeline_);
  positions_ = platform::services().notificationCenter->addObserver(
      SDKNotification::locationUpdate, [this](const platform::Notification& notification) {
        const auto* location = notification.objectAs<platform::Location>();
        if (!location) return;
        add("position", describe(*location),
            {{"latitude", location->coordinate.latitude},
             {"longitude", location->coordinate.longitude},
             {"horizontalAccuracy", location->horizontalAccuracy}});
      });
}

void Track::note(const Exchange& exchange) {
  exchanges_.add(exchange);
  progress_.clear();
  timeline_.add(exchange);
}

void Track::add(std::string_view kind, const std::string& text, platform::Dictionary details) {
  progress_.clear();
  timeline_.add(kind, text, std::move(details));
}

ExitCode Track::summarize() {
  std::string text;
  platform::Dictionary requests;
  for (const auto& [kind, count] : exchanges_.counts()) {
    text += std::to_string(count) + " x " + kind + "\n";
    requests.emplace(kind, count);
  }
  const std::size_t failed = exchanges_.failed();
  text += "Requests that failed: " + std::to_string(failed) + "\n";
  timeline_.summarize(text, {{"requests", requests}, {"failed", failed}});
  return failed == 0 ? ExitCode::success : ExitCode::failure;
}

}  // namespace ovinta::cli
