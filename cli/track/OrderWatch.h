#pragma once

#include <optional>

#include "cli/client/ClientOptions.h"
#include "cli/client/Waiting.h"
#include "cli/device/Interruption.h"
#include "cli/track/SandboxPushes.h"
#include "cli/track/TrackReport.h"

namespace ovinta::cli {

/// Shows what becomes of the open orders by the pushes of a sandbox. Used on the main thread.
class OrderWatch {
 public:
  /// `options` and `interruption` must outlive the object.
  OrderWatch(const ClientOptions& options, Interruption& interruption);
  ~OrderWatch() { session_->disconnect(); }
  OrderWatch(const OrderWatch&) = delete;
  OrderWatch& operator=(const OrderWatch&) = delete;

  /// Fetches the orders, and goes on until none is open any more. Throws `Interrupted`.
  ExitCode run();

 private:
  void finishFetch(const ErrorPtr& error);
  /// Ends the main loop when there is nothing more to watch.
  void watch();
  /// Listens for the pushes of all open orders, and fails where they do not come any more.
  void watchPushes();

  const ClientOptions& options_;
  Interruption& interruption_;
  TrackReport report_;
  std::shared_ptr<ObservedURLSession> session_;
  SandboxPushes pushes_{report_, interruption_};
  std::optional<Waiting> waiting_;
  bool isWatching_ = false;
  /// The exit code of a run that has failed.
  std::optional<ExitCode> failure_;
};

}  // namespace ovinta::cli
