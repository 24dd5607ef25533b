#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Output.h"
#include "cli/client/Progress.h"
#include "cli/device/ExchangeLog.h"
#include "cli/device/NotificationLines.h"
#include "cli/device/Timeline.h"

namespace ovinta::cli {

/// The orders that are open now.
inline OrderList openOrders() { return Ovinta::orders().open().value_or(OrderList{}); }

/// Metres from there to the nearest site of an open order.
std::optional<double> nearestSiteDistance(const platform::Location& from);

/// Tells what happens while open orders are followed. May be used from any thread.
class TrackReport {
 public:
  /// `now` is asked for the time of each line.
  TrackReport(bool json, std::function<platform::Date()> now) : timeline_(json, std::move(now)) {}

  /// A heading, and from then on a line for each notification and position of the library.
  void begin();
  void add(std::string_view kind, const std::string& text, platform::Dictionary details = {});
  /// The line of a request and its answer.
  void add(const Exchange& exchange);
  void setSituation(Situation situation) { timeline_.setSituation(std::move(situation)); }
  void showProgress(const std::string& text) { progress_.show(text); }

  /// The closing summary; a failure when a request has failed.
  ExitCode summarize();

 private:
  Progress progress_;
  Timeline timeline_;
  ExchangeLog exchanges_;
  std::optional<NotificationLines> notificationLines_;
  std::unique_ptr<platform::NotificationObserver> positions_;
};

}  // namespace ovinta::cli
