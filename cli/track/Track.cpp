#include "cli/track/Track.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <utility>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/ClientServices.h"
#include "cli/client/PendingNotifications.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

/// How long it goes on after the trip, for what the last position causes.
constexpr int kSecondsAfter = 10;

std::string metres(double distance) { return std::to_string(std::lround(distance)) + " m"; }

}  // namespace

Track::Track(const TrackOptions& options, platform::simulation::Trip trip,
             Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      report_(options.client.json, [this] { return device_.time().now(); }),
      base_(clientServices(options.client)),
      device_(base_, std::chrono::floor<std::chrono::seconds>(base_.clock->now()),
              [this](const Exchange& exchange) { report_.add(exchange); }),
      player_(device_.simulation(), std::move(trip), options.trip.seed) {
  configureLibrary(options.client);
}

ExitCode Track::run() {
  if (const auto outcome = fetchOrders()) return *outcome;
  takeArmedNotifications();
  drive();
  const ExitCode code = report_.summarize();
  interruption_.check();
  return code;
}

std::optional<ExitCode> Track::fetchOrders() {
  const Output output(options_.client.json);
  const auto end = std::make_shared<Guarded<std::optional<ErrorPtr>>>();
  Ovinta::orders().fetch([end](const auto& /*orders*/, const ErrorPtr& error) { end->set(error); });
  report_.showProgress("Fetching the orders");
  device_.time().waitUntil([&] { return end->get() || interruption_.happened(); }, kPatience);
  report_.hideProgress();
  interruption_.check();
  const auto error = end->get();
  if (!error) {
    output.printFailure("The orders cannot be fetched", "no answer came.");
    return ExitCode::failure;
  }
  if (*error) {
    output.print(**error);
    return ExitCode::failure;
  }
  if (!openOrders().empty()) return std::nullopt;
  output.printFailure("Nothing to Follow", "No order of the customer is open.");
  return ExitCode::failure;
}

void Track::takeArmedNotifications() {
  auto& device = device_.simulation().notifications();
  for (const auto& request : pendingNotifications(*base_.userNotifications)) {
    device.add(request, {});
  }
  device.onFired([this](const platform::UserNotificationRequest& request) {
    base_.userNotifications->removePendingNotificationRequests({request.identifier});
    report_.add("shown", request.content.title + ": " + request.content.body,
                {{"identifier", request.identifier}});
  });
}

void Track::drive() {
  report_.begin();
  player_.start();
  int secondsAfter = 0;
  while (!openOrders().empty() && !interruption_.happened() && secondsAfter < kSecondsAfter) {
    passSecond();
    if (player_.isFinished()) ++secondsAfter;
  }
  // Answered once the removals before are done.
  pendingNotifications(*base_.userNotifications);
}

void Track::passSecond() {
  device_.time().advance(1s, [this] { return interruption_.happened(); });
  updateSituation();
  interruption_.happened(options_.trip.pace /
                         std::chrono::duration<double>(player_.duration()).count());
}

void Track::updateSituation() {
  const auto position = player_.position();
  const auto distance =
      position ? nearestSiteDistance({.coordinate = *position}) : std::optional<double>();
  report_.setSituation(distance, device_.location().observed());
  report_.showProgress(metres(player_.distanceAlong()) + " driven, " +
                       metres(distance.value_or(0)) + " to the site");
}

}  // namespace ovinta::cli
