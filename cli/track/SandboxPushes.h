#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/ClientOptions.h"
#include "cli/device/Interruption.h"
#include "cli/device/PushListener.h"
#include "cli/track/TrackReport.h"

namespace ovinta::cli {

/// Has the library take the pushes that a sandbox sends for the open orders. Used on the main
/// thread.
class SandboxPushes {
 public:
  /// `report` and `interruption` must outlive the object.
  SandboxPushes(TrackReport& report, Interruption& interruption)
      : report_(report), interruption_(interruption) {}

  /// To be called when the library is configured, before the orders are fetched: gives the open
  /// orders a push token that have none, where the service is a sandbox. Throws `Interrupted`.
  void prepare(const ClientOptions& options);

  /// Listens from now on for the pushes of the orders that are open. To be called again and again,
  /// for those that have become open since or have another push token.
  void listen();
  /// The same, and tells in a line of the report, once, that no pushes come.
  void listenAndTell();

  /// Why no pushes come, or none any more; absent while they do.
  std::optional<std::string> failure() const { return failure_.get(); }

 private:
  /// Why the service is no sandbox; absent when it is one.
  std::optional<std::string> tryService(const std::string& baseURL) const;
  void listenFor(const std::string& pushToken);

  TrackReport& report_;
  Interruption& interruption_;
  /// Empty where the service is no sandbox.
  std::string baseURL_;
  std::string token_;
  std::string ownPushToken_;
  Guarded<std::optional<std::string>> failure_;
  bool hasTold_ = false;
  /// Each by its push token.
  std::map<std::string, std::unique_ptr<PushListener>> listeners_;
};

}  // namespace ovinta::cli
