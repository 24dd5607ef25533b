#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/core/Lazy.h"
#include "platform/DateFormatter.h"
#include "platform/OperationQueue.h"
#include "platform/PersistentContainer.h"

namespace ovinta {

class ConfigurationManager;
class CustomerManager;
class LocationUpdater;
class NotificationReplacements;
class NotifyManager;
class OrdersManager;
class SitesManager;

/// Everything that lives as long as the process: what the facade `Ovinta` owns and the rest of the
/// library shares. May be used from any thread save where noted; each part is made on first use.
class OvintaState {
 public:
  /// The state in force; made on first use, never destroyed, so that requests still in flight when
  /// the process exits find everything in place.
  static OvintaState& current();

  /// Starts afresh with a new state, for tests. The old one stays, for whoever still works on it.
  static void replace();

  OvintaState();
  ~OvintaState();
  OvintaState(const OvintaState&) = delete;
  OvintaState& operator=(const OvintaState&) = delete;

  Guarded<std::optional<std::string>> appToken;
  Guarded<std::optional<std::string>> pushToken;

  /// Version of the library and of the host application, read once; empty when there is none.
  const std::string& sdkVersion();
  const std::string& appVersion();

  /// Runs every request to the service.
  platform::OperationQueue& apiQueue();
  /// Runs the writes to the order store, one at a time.
  platform::OperationQueue& storeQueue();
  /// The order store. A missing model or a store that cannot be loaded ends the process.
  platform::PersistentContainer& persistentContainer();

  /// Pickup windows: device locale, zone and calendar, offset without a colon.
  const platform::DateFormatter& pickupWindowFormatter();
  /// The service's instants: UTC, offset with a colon or "Z".
  const platform::DateFormatter& serviceDateFormatter();

  OrdersManager& orders();
  CustomerManager& customer();
  SitesManager& sites();
  ConfigurationManager& config();
  NotifyManager& notify();
  /// Where the replacements of armed notifications wait for their turn, whichever manager asks.
  Lazy<NotificationReplacements> notificationReplacements;

  /// The shared updater, or null before `makeLocationUpdater`.
  LocationUpdater* locationUpdater() const { return updater_.load(); }
  /// Makes the shared updater if there is none. Main thread only.
  void makeLocationUpdater();

 private:
  Lazy<const std::string> sdkVersion_;
  Lazy<const std::string> appVersion_;
  Lazy<platform::OperationQueue> apiQueue_;
  Lazy<platform::OperationQueue> storeQueue_;
  Lazy<platform::PersistentContainer> persistentContainer_;
  Lazy<const platform::DateFormatter> pickupWindowFormatter_;
  Lazy<const platform::DateFormatter> serviceDateFormatter_;
  Lazy<OrdersManager> orders_;
  Lazy<CustomerManager> customer_;
  Lazy<SitesManager> sites_;
  Lazy<ConfigurationManager> config_;
  Lazy<NotifyManager> notify_;
  std::unique_ptr<LocationUpdater> ownedUpdater_;
  std::atomic<LocationUpdater*> updater_ = nullptr;
};

}  // namespace ovinta
