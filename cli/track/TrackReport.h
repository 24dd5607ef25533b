#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Output.h"
#include "cli/client/Progress.h"
#include "cli/device/ExchangeLog.h"
#include "cli/device/NotificationLines.h"
#include "cli/device/ObservedLocationServices.h"
#include "cli/device/Timeline.h"

namespace ovinta::cli {

/// The orders that are open now.
inline OrderList openOrders() { return Ovinta::orders().open().value_or(OrderList{}); }

/// Metres from there to the nearest site of an open order.
std::optional<double> nearestSiteDistance(const platform::Location& from);

/// Tells what happens while open orders are followed. May be used from any thread, save where it
/// says so.
class TrackReport {
 public:
  /// `now` is asked for the time of each line.
  TrackReport(bool json, std::function<platform::Date()> now) : timeline_(json, std::move(now)) {}

  /// A heading, and from then on a line for each notification and position of the library.
  void begin();
  void add(std::string_view kind, const std::string& text, platform::Dictionary details = {});
  /// Prints the line of a request and its answer.
  void add(const Exchange& exchange);
  /// What comes with each line from now on, the distance in metres to the nearest site; and a line
  /// when other positions or beacons are asked for than before. Main thread only.
  void setSituation(std::optional<double> distance, const ObservedLocation& location);
  /// Shows lines that stay below the others, as `Timeline::showBelow` does.
  void showBelow(std::vector<std::string> lines) { timeline_.showBelow(std::move(lines)); }
  void showProgress(const std::string& text) { progress_.show(text); }
  void hideProgress() { progress_.clear(); }

  const ExchangeLog& exchanges() const { return exchanges_; }

  /// The closing summary; a failure when a request has failed.
  ExitCode summarize();

 private:
  Progress progress_;
  Timeline timeline_;
  ExchangeLog exchanges_;
  std::optional<NotificationLines> notificationLines_;
  std::unique_ptr<platform::NotificationObserver> positions_;
  /// The accuracy that was last shown.
  std::string accuracy_;
  std::size_t rangedRegions_ = 0;
};

}  // namespace ovinta::cli
