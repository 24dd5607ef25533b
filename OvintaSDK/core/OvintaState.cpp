#include "OvintaSDK/core/OvintaState.h"

#include <mutex>
#include <vector>

#include "OvintaSDK/core/ConfigurationManager.h"
#include "OvintaSDK/core/OrderStoreContainer.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/location/LocationUpdater.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "OvintaSDK/sites/NotifyManager.h"
#include "OvintaSDK/sites/SitesManager.h"
#include "platform/Services.h"

namespace ovinta {
namespace {

std::atomic<OvintaState*> currentState = nullptr;

/// Makes a state the current one. All states stay reachable, since they are never destroyed.
OvintaState& adopt(std::unique_ptr<OvintaState> state) {
  static auto& kept = *new std::vector<std::unique_ptr<OvintaState>>;
  kept.push_back(std::move(state));
  currentState.store(kept.back().get());
  return *kept.back();
}

std::mutex& adoptionMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

std::shared_ptr<const std::string> shortVersion(const platform::Bundle& bundle) {
  return std::make_shared<const std::string>(
      bundle.infoText("CFBundleShortVersionString").value_or(""));
}

template <class Manager>
std::shared_ptr<Manager> make() {
  return std::make_shared<Manager>();
}

std::shared_ptr<const platform::DateFormatter> makeFormatter(const platform::DateFormat& format) {
  return platform::services().dateFormatters->makeDateFormatter(format);
}

}  // namespace

OvintaState& OvintaState::current() {
  if (OvintaState* state = currentState.load()) return *state;
  const std::scoped_lock lock(adoptionMutex());
  if (OvintaState* state = currentState.load()) return *state;
  return adopt(std::make_unique<OvintaState>());
}

void OvintaState::replace() {
  const std::scoped_lock lock(adoptionMutex());
  adopt(std::make_unique<OvintaState>());
}

OvintaState::OvintaState() = default;
OvintaState::~OvintaState() = default;

const std::string& OvintaState::sdkVersion() {
  return sdkVersion_.get([] { return shortVersion(*platform::services().libraryBundle); });
}

const std::string& OvintaState::appVersion() {
  return appVersion_.get([] { return shortVersion(*platform::services().mainBundle); });
}

platform::OperationQueue& OvintaState::apiQueue() {
  return apiQueue_.get([] { return platform::services().operationQueues->makeQueue(); });
}

platform::OperationQueue& OvintaState::storeQueue() {
  return storeQueue_.get([] {
    auto queue = platform::services().operationQueues->makeQueue();
    queue->setMaxConcurrentOperationCount(1);
    return queue;
  });
}

platform::PersistentContainer& OvintaState::persistentContainer() {
  return persistentContainer_.get([this] {
    auto container = makeOrderStoreContainer();
    storeQueue().setMaxConcurrentOperationCount(1);
    return container;
  });
}

const platform::DateFormatter& OvintaState::pickupWindowFormatter() {
  return pickupWindowFormatter_.get(
      [] { return makeFormatter({.pattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZ"}); });
}

const platform::DateFormatter& OvintaState::serviceDateFormatter() {
  return serviceDateFormatter_.get([] {
    return makeFormatter({.pattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ",
                          .calendar = "iso8601",
                          .secondsFromGMT = 0,
                          .locale = "en_US_POSIX"});
  });
}

OrdersManager& OvintaState::orders() { return orders_.get(make<OrdersManager>); }

CustomerManager& OvintaState::customer() { return customer_.get(make<CustomerManager>); }

SitesManager& OvintaState::sites() { return sites_.get(make<SitesManager>); }

ConfigurationManager& OvintaState::config() { return config_.get(make<ConfigurationManager>); }

NotifyManager& OvintaState::notify() { return notify_.get(make<NotifyManager>); }

void OvintaState::makeLocationUpdater() {
  if (ownedUpdater_) return;
  ownedUpdater_ = std::make_unique<LocationUpdater>();
  updater_.store(ownedUpdater_.get());
}

}  // namespace ovinta
