#include "OvintaSDK/orders/OrdersManager.h"

#include "OvintaSDK/api/GetOrdersOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/PostNotification.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/WithoutNulls.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/orders/OrderLists.h"
#include "OvintaSDK/orders/SyncOrdersOperation.h"
#include "platform/Services.h"

namespace ovinta {

void OrdersManager::setAll(std::optional<OrderList> orders) {
  orders = withoutNulls(std::move(orders));
  const std::scoped_lock lock(settingAll_);
  all_.set(orders);
  if (!orders) return;
  OvintaState::current().storeQueue().addOperation(std::make_shared<SyncOrdersOperation>(
      *std::move(orders), [](const auto&, const auto&) { logLine("Finished syncing orders"); }));
}

void OrdersManager::setOpen(std::optional<OrderList> orders) {
  open_.set(withoutNulls(std::move(orders)));
}

void OrdersManager::setClosed(std::optional<OrderList> orders) {
  closed_.set(withoutNulls(std::move(orders)));
}

void OrdersManager::fetch(OrdersCallback callback) {
  const auto refuse = [this, &callback](OrdersManagerErrorType type) {
    const ErrorPtr error = recordRefusal(type);
    if (callback) callback(std::nullopt, error);
    postNotification(SDKNotification::ordersError, error);
  };
  const CustomerPtr customer = OvintaState::current().customer().current();
  if (!customer) return refuse(OrdersManagerErrorType::loadingCustomer);
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return refuse(OrdersManagerErrorType::loadingApiUrl);
  if (fetchingOrders_.exchange(true)) {
    // The fetch that is running keeps its state and its listeners undisturbed.
    const ErrorPtr error = logRefusal(OrdersManagerErrorType::alreadyFetching);
    if (callback) callback(std::nullopt, error);
    return;
  }
  logLine("Getting Orders");
  OvintaState::current().apiQueue().addOperation(std::make_shared<GetOrdersOperation>(
      *apiURL, customer,
      [this, callback = std::move(callback)](const auto& orders, const ErrorPtr& error) {
        finishFetch(orders, error, callback);
      }));
}

void OrdersManager::finishFetch(const std::optional<OrderList>& orders, const ErrorPtr& error,
                                const OrdersCallback& callback) {
  setLastFetch(LastFetch{.date = platform::services().clock->now(), .error = error});
  if (orders) {
    adopt(*orders);
  } else {
    logLine("Got an error getting orders");
  }
  if (callback) callback(orders, error);
  if (orders) {
    postNotification(SDKNotification::ordersUpdated, *orders);
    updateOrdersWithNoPushToken();
  } else {
    postNotification(SDKNotification::ordersError, error);
  }
  fetchingOrders_ = false;
}

void OrdersManager::adopt(const OrderList& orders) {
  setAll(orders);
  rebuildOpen();
  setClosed(closedOrders(orders));
}

void OrdersManager::rebuildOpen() {
  const std::scoped_lock lock(rebuildingOpen_);
  if (const auto orders = all()) setOpen(openOrders(*orders));
}

OrderPtr OrdersManager::findOrder(std::int64_t id) const { return ovinta::findOrder(all(), id); }

ErrorPtr OrdersManager::logRefusal(OrdersManagerErrorType type) const {
  auto error = std::make_shared<const OrdersManagerError>(type);
  logLine(error->localizedDescription());
  return error;
}

ErrorPtr OrdersManager::recordRefusal(OrdersManagerErrorType type) {
  ErrorPtr error = std::make_shared<const OrdersManagerError>(type);
  setLastFetch(LastFetch{.date = platform::services().clock->now(), .error = error});
  logLine(error->localizedDescription());
  return error;
}

}  // namespace ovinta
