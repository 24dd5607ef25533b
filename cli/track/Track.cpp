#include "cli/track/Track.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <utility>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/ClientServices.h"
#include "cli/client/PendingNotifications.h"
#include "cli/track/SiteTrip.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

/// How long it goes on after the trip, for what the last position causes.
constexpr int kSecondsAfter = 10;

std::string metres(double distance) { return std::to_string(std::lround(distance)) + " m"; }

}  // namespace

Track::Track(const TrackOptions& options, std::optional<platform::simulation::Trip> trip,
             Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      report_(options.client.json, [this] { return device_.time().now(); }),
      base_(clientServices(options.client)),
      device_(
          base_, std::chrono::floor<std::chrono::seconds>(base_.clock->now()),
          [this](const Exchange& exchange) { report_.add(exchange); },
          options.isDelivering ? std::optional(platform::DeliveryOptions()) : std::nullopt),
      trip_(std::move(trip)) {
  configureLibrary(options.client);
}

ExitCode Track::run() {
  if (const auto outcome = fetchOrders()) return *outcome;
  if (const auto outcome = planTrip()) return *outcome;
  takeArmedNotifications();
  drive();
  const ExitCode code = report_.summarize();
  interruption_.check();
  return code;
}

std::optional<ExitCode> Track::fetchOrders() {
  const Output output(options_.client.json);
  const auto end = std::make_shared<Guarded<std::optional<ErrorPtr>>>();
  pushes_.prepare(options_.client);
  report_.showProgress("Fetching the orders");
  Ovinta::orders().fetch([end](const auto& /*orders*/, const ErrorPtr& error) { end->set(error); });
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

std::optional<ExitCode> Track::planTrip() {
  if (!trip_) {
    destination_ = openOrders().front();
    trip_ = tripToSite(*destination_);
  }
  if (!trip_) {
    Output(options_.client.json)
        .printFailure("No Way to the Site",
                      "Order " + std::to_string(destination_->id) +
                          " does not say where its site is: give a trip with --trip.");
    return ExitCode::failure;
  }
  player_.emplace(device_.simulation(), *trip_, options_.trip.seed);
  return std::nullopt;
}

std::string Track::destinationText() const {
  if (!destination_) {
    const auto rest = nearestSiteDistance({.coordinate = trip_->points.back().coordinate});
    return rest ? "ends " + metres(*rest) + " from the nearest site" : "knows of no site";
  }
  return "to site " + std::to_string(destination_->siteID) + " of order " +
         std::to_string(destination_->id) + ": " + destination_->siteName.value_or("no name");
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
  report_.add("trip", destinationText());
  pushes_.listenAndTell();
  player_->start();
  int secondsAfter = 0;
  while (!openOrders().empty() && !interruption_.happened() && secondsAfter < kSecondsAfter) {
    passSecond();
    if (player_->isFinished()) ++secondsAfter;
  }
  // Asked for its order alone: the answer comes once the removals before are done.
  pendingNotifications(*base_.userNotifications);
}

void Track::passSecond() {
  device_.time().advance(1s, [this] { return interruption_.happened(); });
  pushes_.listenAndTell();
  updateSituation();
  interruption_.happened(options_.trip.pace /
                         std::chrono::duration<double>(player_->duration()).count());
}

void Track::updateSituation() {
  const auto position = player_->position();
  const auto distance =
      position ? nearestSiteDistance({.coordinate = *position}) : std::optional<double>();
  report_.setSituation(distance, device_.location().observed());
  report_.showProgress(metres(player_->distanceAlong()) + " driven, " +
                       metres(distance.value_or(0)) + " to the site");
}

}  // namespace ovinta::cli
