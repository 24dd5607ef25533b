#include "cli/track/TrackReport.h"

#include <utility>

namespace ovinta::cli {

namespace {

platform::Dictionary deliveryRecord(const platform::DeliveryAccount& account) {
  platform::Dictionary dropped;
  for (std::size_t i = 0; i < account.dropped.size(); ++i) {
    const auto reason = static_cast<platform::DropReason>(i);
    dropped.emplace(platform::name(reason), account.dropped.at(i));
  }
  platform::Dictionary record{{"made", account.made},
                              {"delivered", account.delivered},
                              {"waiting", account.waiting},
                              {"superseded", account.superseded},
                              {"dropped", std::move(dropped)}};
  if (account.storageFailure) record.emplace("storageFailure", *account.storageFailure);
  return record;
}

}  // namespace

std::optional<double> nearestSiteDistance(const platform::Location& from) {
  std::optional<double> nearest;
  for (const OrderPtr& order : openOrders()) {
    const auto distance = order->siteDistance(from);
    if (distance && !(nearest && *nearest <= *distance)) nearest = distance;
  }
  return nearest;
}

void TrackReport::begin() {
  timeline_.begin("Following " + std::to_string(openOrders().size()) + " open order(s)");
  notificationLines_.emplace(timeline_);
  positions_ = platform::services().notificationCenter->addObserver(
      SDKNotification::locationUpdate, [this](const platform::Notification& notification) {
        const auto* location = notification.objectAs<platform::Location>();
        if (!location) return;
        add("position", placeText(*location),
            {{"latitude", location->coordinate.latitude},
             {"longitude", location->coordinate.longitude},
             {"horizontalAccuracy", location->horizontalAccuracy}});
      });
}

void TrackReport::add(std::string_view kind, const std::string& text,
                      platform::Dictionary details) {
  progress_.clear();
  timeline_.add(kind, text, std::move(details));
}

void TrackReport::setSituation(std::optional<double> distance, const ObservedLocation& location) {
  const std::string accuracy = accuracyText(location);
  timeline_.setSituation({.distance = distance, .accuracy = accuracy});
  if (std::exchange(accuracy_, accuracy) != accuracy) {
    add("accuracy", accuracy.empty() ? "positions are no longer asked for" : accuracy);
  }
  const std::size_t regions = location.rangedRegions.size();
  if (std::exchange(rangedRegions_, regions) != regions) {
    add("beacons", "listening for those of " + std::to_string(regions) + " region(s)");
  }
}

void TrackReport::add(const Exchange& exchange) {
  exchanges_.add(exchange);
  progress_.clear();
  timeline_.add(exchange);
}

ExitCode TrackReport::summarize() {
  progress_.clear();
  std::string text;
  platform::Dictionary requests;
  for (const auto& [kind, count] : exchanges_.counts()) {
    text += std::to_string(count) + " x " + kind + "\n";
    requests.emplace(kind, count);
  }
  const std::size_t failed = exchanges_.failed();
  text += "Requests that failed: " + std::to_string(failed) + "\n";
  platform::Dictionary details{{"requests", requests}, {"failed", failed}};
  if (const auto& delivery = platform::services().delivery) {
    const auto account = delivery->account();
    text += "Order events: " + summary(account) + "\n";
    if (account.storageFailure) {
      text += "Those that wait are in memory only: " + *account.storageFailure + "\n";
    }
    details.emplace("delivery", deliveryRecord(account));
  }
  timeline_.summarize(text, details);
  return failed == 0 ? ExitCode::success : ExitCode::failure;
}

}  // namespace ovinta::cli
