#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/client/Progress.h"
#include "cli/device/ExchangeLog.h"
#include "cli/device/Interruption.h"
#include "cli/device/NotificationLines.h"
#include "cli/device/Timeline.h"
#include "cli/device/TripDevice.h"
#include "cli/device/TripOptions.h"
#include "platform/simulation/TripPlayer.h"

namespace ovinta::cli {

struct TrackOptions {
  ClientOptions client = {};
  TripOptions trip = {};
};

/// Takes the customer of the data directory on a simulated trip, with the service told for real,
/// while the library follows the open orders. Used on one thread, which plays the main one.
class Track {
 public:
  /// The trip must hold at least one point. `options` and `interruption` must outlive the object.
  Track(const TrackOptions& options, platform::simulation::Trip trip, Interruption& interruption);
  ~Track();
  Track(const Track&) = delete;
  Track& operator=(const Track&) = delete;

  /// Fetches the orders and drives until the trip is over or no order is open any more. Throws
  /// `Interrupted`.
  ExitCode run();

 private:
  void observe();
  void note(const Exchange& exchange);
  /// Arms on the device what the data directory holds; what fires goes from there.
  void takeArmedNotifications();
  /// The outcome of fetching the orders; absent when orders are open.
  std::optional<ExitCode> fetchOrders();
  void drive();
  /// Lets a second pass, at the pace asked for.
  void passSecond();
  void updateSituation();
  std::optional<double> nearestSiteDistance() const;
  ExitCode summarize();
  /// A line of the timeline, clear of the progress.
  void add(std::string_view kind, const std::string& text, platform::Dictionary details = {});

  const TrackOptions& options_;
  Interruption& interruption_;
  const Output output_;
  Progress progress_;
  Timeline timeline_;
  ExchangeLog exchanges_;
  /// What the simulation stands on. Its notification centre is where notifications are armed for
  /// good.
  const platform::Services base_;
  TripDevice device_;
  platform::simulation::TripPlayer player_;
  std::optional<NotificationLines> notificationLines_;
  std::unique_ptr<platform::NotificationObserver> positions_;
  /// As last shown.
  std::string accuracy_;
  std::size_t rangedRegions_ = 0;
};

}  // namespace ovinta::cli
