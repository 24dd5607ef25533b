#pragma once

#include <memory>
#include <optional>

#include "cli/client/ClientOptions.h"
#include "cli/device/Interruption.h"
#include "cli/track/TrackReport.h"

namespace ovinta::cli {

/// Lets the library follow this device's own position while orders are open. Used on the main
/// thread.
class LiveTrack {
 public:
  /// `options` and `interruption` must outlive the object.
  LiveTrack(const ClientOptions& options, Interruption& interruption);
  ~LiveTrack() { session_->disconnect(); }
  LiveTrack(const LiveTrack&) = delete;
  LiveTrack& operator=(const LiveTrack&) = delete;

  /// Fetches the orders and follows them until none is open any more. Where location services are
  /// off it fails at once and says so. Throws `Interrupted`.
  ExitCode run();

 private:
  void fetchOrders();
  /// Ends the main loop when there is nothing more to follow; looks again and again.
  void watch();

  const ClientOptions& options_;
  Interruption& interruption_;
  TrackReport report_;
  std::shared_ptr<ObservedURLSession> session_;
  std::unique_ptr<platform::NotificationObserver> positions_;
  /// Absent as long as orders may be open.
  std::optional<ExitCode> end_;
  bool isFollowing_ = false;
};

}  // namespace ovinta::cli
