#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/client/ClientOptions.h"
#include "cli/device/PushListener.h"
#include "cli/track/TrackReport.h"

namespace ovinta::cli {

/// Has the library take the pushes that a sandbox sends for the open orders. No effect where the
/// service is no sandbox. Used on the main thread.
class SandboxPushes {
 public:
  /// `report` must outlive the object.
  explicit SandboxPushes(TrackReport& report) : report_(report) {}

  /// To be called when the library is configured, before the orders are fetched: gives the open
  /// orders a push token that have none.
  void prepare(const ClientOptions& options);

  /// Listens from now on for the pushes of the orders that are open.
  void listen();

 private:
  TrackReport& report_;
  /// Empty where the service is no sandbox.
  std::string baseURL_;
  std::string token_;
  std::string ownPushToken_;
  std::vector<std::unique_ptr<PushListener>> listeners_;
};

}  // namespace ovinta::cli
