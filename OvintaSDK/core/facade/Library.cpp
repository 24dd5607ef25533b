#include "OvintaSDK/core/facade/Library.h"

#include <mutex>
#include <vector>

#include "OvintaSDK/core/facade/ConfigurationManager.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/location/LocationUpdater.h"
#include "OvintaSDK/orders/Orders.h"
#include "OvintaSDK/sites/SiteNotifications.h"
#include "OvintaSDK/sites/Sites.h"

namespace ovinta {
namespace {

std::atomic<Library*> currentLibrary = nullptr;

/// Makes a new library that of the process. All stay reachable, since they are never destroyed.
Library& adoptNew() {
  static auto& kept = *new std::vector<std::unique_ptr<Library>>;
  kept.push_back(std::make_unique<Library>(platform::services));
  currentLibrary.store(kept.back().get());
  return *kept.back();
}

std::mutex& adoptionMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

/// Makes the part when it is first asked for, and hands out the same one from then on.
template <class Part, class... Uses>
std::function<std::shared_ptr<Part>()> lazily(Uses... uses) {
  return [part = std::make_shared<Lazy<Part>>(), uses...] {
    return part->shared([&] { return std::make_shared<Part>(uses...); });
  };
}

}  // namespace

Library::Library(std::function<const platform::Services&()> services)
    : context_(std::make_shared<Context>(std::move(services))),
      customers_(lazily<Customers>(context_)),
      orders_(lazily<Orders>(context_, customers_)),
      sites_(lazily<Sites>(context_)),
      notifications_(lazily<SiteNotifications>(context_, sites_)) {}

Library::~Library() = default;

Library& Library::process() {
  if (Library* const library = currentLibrary.load()) return *library;
  const std::lock_guard lock(adoptionMutex());
  if (Library* const library = currentLibrary.load()) return *library;
  return adoptNew();
}

void Library::replaceProcess() {
  const std::lock_guard lock(adoptionMutex());
  adoptNew();
}

OrdersManager& Library::orders() {
  return ordersManager_.get(
      [this] { return std::unique_ptr<OrdersManager>(new OrdersManager(orders_())); });
}

CustomerManager& Library::customer() {
  return customerManager_.get(
      [this] { return std::unique_ptr<CustomerManager>(new CustomerManager(customers_())); });
}

SitesManager& Library::sites() {
  return sitesManager_.get(
      [this] { return std::unique_ptr<SitesManager>(new SitesManager(sites_())); });
}

ConfigurationManager& Library::config() {
  return configurationManager_.get(
      [this] { return std::unique_ptr<ConfigurationManager>(new ConfigurationManager(context_)); });
}

NotifyManager& Library::notify() {
  return notifyManager_.get(
      [this] { return std::unique_ptr<NotifyManager>(new NotifyManager(notifications_())); });
}

void Library::makeLocationUpdater() {
  if (ownedUpdater_) return;
  ownedUpdater_ = std::make_unique<LocationUpdater>(context_, orders_());
  updater_.store(ownedUpdater_.get());
}

// The managers that an application makes for itself share the process's context: each has lists of
// its own, and the customer and the armed notifications of all. An order that is gone is so for the
// process's orders, which the user's location is followed for.

OrdersManager::OrdersManager()
    : OrdersManager(std::make_shared<Orders>(
          Library::process().context_, Library::process().customers_, Library::process().orders_)) {
}

CustomerManager::CustomerManager()
    : CustomerManager(std::make_shared<Customers>(Library::process().context_)) {}

SitesManager::SitesManager() : SitesManager(std::make_shared<Sites>(Library::process().context_)) {}

NotifyManager::NotifyManager() : NotifyManager(Library::process().notifications_()) {}

ConfigurationManager::ConfigurationManager() : ConfigurationManager(Library::process().context_) {}

}  // namespace ovinta
