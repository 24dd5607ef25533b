#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "OvintaSDK/core/Context.h"
#include "OvintaSDK/core/Lazy.h"

namespace ovinta {

class ConfigurationManager;
class CustomerManager;
class Customers;
class LocationUpdater;
class NotifyManager;
class Orders;
class OrdersManager;
class SiteNotifications;
class Sites;
class SitesManager;

/// A context with its managers, each made on first use: what the facade `Ovinta` opens to the
/// application. The only place that knows all managers. May be used from any thread save where
/// noted. Several may live in one process. Requests in flight may outlive it; one that follows the
/// location is destroyed on the main thread, after the last task that the main queue has for it.
class Library {
 public:
  /// Works on the services that `services` answers; see `Context`.
  explicit Library(std::function<const platform::Services&()> services);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  /// The library of the process, on the installed services; made on first use, never destroyed, so
  /// that requests still in flight when the process exits find everything in place.
  static Library& process();

  /// Makes a new library that of the process, so that a test starts afresh. The old one lives on,
  /// for whoever still works on it.
  static void replaceProcess();

  const ContextPtr& context() const { return context_; }

  OrdersManager& orders();
  CustomerManager& customer();
  SitesManager& sites();
  ConfigurationManager& config();
  NotifyManager& notify();

  /// The updater, or null before `makeLocationUpdater`.
  LocationUpdater* locationUpdater() const { return updater_.load(); }
  /// Makes the updater if there is none. Main thread only.
  void makeLocationUpdater();

 private:
  template <class Part>
  using Source = std::function<std::shared_ptr<Part>()>;

  // The managers that applications make for themselves are made of the library's parts.
  friend OrdersManager;
  friend CustomerManager;
  friend SitesManager;
  friend ConfigurationManager;
  friend NotifyManager;

  const ContextPtr context_;
  const Source<Customers> customers_;
  const Source<Orders> orders_;
  const Source<Sites> sites_;
  const Source<SiteNotifications> notifications_;
  Lazy<OrdersManager> ordersManager_;
  Lazy<CustomerManager> customerManager_;
  Lazy<SitesManager> sitesManager_;
  Lazy<ConfigurationManager> configurationManager_;
  Lazy<NotifyManager> notifyManager_;
  std::unique_ptr<LocationUpdater> ownedUpdater_;
  std::atomic<LocationUpdater*> updater_ = nullptr;
};

}  // namespace ovinta
