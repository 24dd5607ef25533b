#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "cli/client/ClientOptions.h"
#include "cli/device/Interruption.h"
#include "cli/track/LiveState.h"
#include "cli/track/SandboxPushes.h"
#include "cli/track/TrackReport.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {

/// Lets the library follow this device's own position while orders are open, and shows what it does
/// on the way. Used on the main thread.
class LiveTrack {
 public:
  /// `system` says where the position comes from, and whether there is delivery. `options` and
  /// `interruption` must outlive the object.
  LiveTrack(const ClientOptions& options, const platform::linuxos::Options& system,
            Interruption& interruption);
  ~LiveTrack() { session_->disconnect(); }
  LiveTrack(const LiveTrack&) = delete;
  LiveTrack& operator=(const LiveTrack&) = delete;

  /// Fetches the orders, asks for the permission and follows the orders until none is open any
  /// more. It waits for the permission as long as that can still come: a refusal that comes before
  /// any grant is the end, whatever an earlier run was answered. Throws `Interrupted`.
  ExitCode run();

 private:
  void fetchOrders();
  void finishFetch(const ErrorPtr& error);
  /// Ends with an error instead of a summary.
  void fail(const std::string& title, const std::string& description);
  /// Looks again and again at what the library does, and ends the main loop when there is nothing
  /// more to follow.
  void watch();
  void followPermission();
  /// What is in force; what an earlier run did not get may be had since.
  platform::AuthorizationStatus permission() const;
  /// Asks again from time to time: an answer ends a question, and another one may come later.
  void askPermission();
  void tellPermission();
  void show();
  LiveState state() const;

  const ClientOptions& options_;
  Interruption& interruption_;
  TrackReport report_;
  std::shared_ptr<ObservedURLSession> session_;
  std::shared_ptr<ObservedLocationServices> location_;
  SandboxPushes pushes_{report_, interruption_};
  /// The permission that was last told to the user; absent before the first line.
  std::optional<platform::AuthorizationStatus> permission_;
  /// Whether the permission was granted by an answer to this run.
  bool wasGranted_ = false;
  /// How many times the permission was asked for since it was there last.
  int questions_ = 0;
  std::chrono::steady_clock::time_point nextQuestion_ = std::chrono::steady_clock::now();
  bool isFollowing_ = false;
  /// The exit code of a run that is over; absent as long as orders may be open.
  std::optional<ExitCode> end_;
};

}  // namespace ovinta::cli
