#pragma once

#include <optional>
#include <string>

#include "cli/client/ClientOptions.h"
#include "cli/device/Interruption.h"
#include "cli/device/TripDevice.h"
#include "cli/device/TripOptions.h"
#include "cli/track/SandboxPushes.h"
#include "cli/track/TrackReport.h"
#include "platform/simulation/trip/TripPlayer.h"

namespace ovinta::cli {

struct TrackOptions {
  ClientOptions client = {};
  TripOptions trip = {};
  /// Whether what could not be sent is delivered later.
  bool isDelivering = false;
};

/// Takes the customer of the data directory on a simulated trip, with the service told for real,
/// while the library follows the open orders. Used on one thread, which plays the main one.
class Track {
 public:
  /// The trip must hold at least one point; absent for a drive to the site of the first open order.
  /// `options` and `interruption` must outlive the object.
  Track(const TrackOptions& options, std::optional<platform::simulation::Trip> trip,
        Interruption& interruption);
  Track(const Track&) = delete;
  Track& operator=(const Track&) = delete;

  /// Fetches the orders and drives until the trip is over or no order is open any more. Throws
  /// `Interrupted`.
  ExitCode run();

 private:
  /// Fetches the orders; the exit code where it ends there, absent when orders are open.
  std::optional<ExitCode> fetchOrders();
  /// Decides on the trip; the exit code where there is none, absent otherwise.
  std::optional<ExitCode> planTrip();
  /// Says in words where the trip leads.
  std::string destinationText() const;
  /// Arms on the device what the data directory holds; what fires goes from there.
  void takeArmedNotifications();
  void drive();
  /// Lets a second pass, at the pace asked for.
  void passSecond();
  void updateSituation();

  const TrackOptions& options_;
  Interruption& interruption_;
  TrackReport report_;
  /// What the simulation stands on. Its notification centre is where notifications are armed for
  /// good.
  const platform::Services base_;
  TripDevice device_;
  std::optional<platform::simulation::Trip> trip_;
  /// The order to whose site the trip leads that nobody has given; null when one was.
  OrderPtr destination_;
  std::optional<platform::simulation::TripPlayer> player_;
  SandboxPushes pushes_{report_, interruption_};
};

}  // namespace ovinta::cli
