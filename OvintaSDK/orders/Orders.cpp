#include "OvintaSDK/orders/Orders.h"

#include <utility>

#include "OvintaSDK/api/GetOrdersOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/WithoutNulls.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/orders/OrderLists.h"
#include "OvintaSDK/orders/SyncOrdersOperation.h"

namespace ovinta {

std::optional<OrderList> Orders::all() const {
  const OrderTablePtr table = all_.get();
  return table ? std::optional(table->list()) : std::nullopt;
}

void Orders::setAll(std::optional<OrderList> orders) {
  OrderTablePtr table;
  if (orders) table = std::make_shared<const OrderTable>(withoutNulls(*std::move(orders)));
  const bool isSynced = table != nullptr;
  {
    // The old list, whose orders may end with it, outlives the lock.
    const std::lock_guard lock(settingAll_);
    if (table) unsynced_.push_back(table);
    table = all_.exchange(std::move(table));
  }
  if (!isSynced) return;
  // The store's operations run one at a time, in order, so that each takes the list that was set
  // for it.
  context_->storeQueue().addOperation(std::make_shared<SyncOrdersOperation>(
      context_, [self = shared_from_this()] { return self->takeUnsynced(); },
      [self = shared_from_this()](const auto&, const auto&) {
        self->context_->log("Finished syncing orders");
      }));
}

OrderTablePtr Orders::takeUnsynced() {
  const std::lock_guard lock(settingAll_);
  OrderTablePtr orders = std::move(unsynced_.front());
  unsynced_.pop_front();
  return orders;
}

void Orders::setOpen(std::optional<OrderList> orders) {
  open_.set(withoutNulls(std::move(orders)));
}

void Orders::setClosed(std::optional<OrderList> orders) {
  closed_.set(withoutNulls(std::move(orders)));
}

CustomerPtr Orders::currentCustomer() const { return customers_()->current(); }

void Orders::fetch(OrdersCallback callback) {
  const auto refuse = [this, &callback](OrdersManagerErrorType type) {
    const ErrorPtr error = recordRefusal(type);
    tellError(callback, error);
    postError(*context_, SDKNotification::ordersError, error);
  };
  const CustomerPtr customer = currentCustomer();
  if (!customer) return refuse(OrdersManagerErrorType::loadingCustomer);
  const auto api = APIClient::of(context_);
  if (!api) return refuse(OrdersManagerErrorType::loadingApiUrl);
  if (isFetching_.exchange(true)) {
    // Neither `lastFetch` nor a notification tells of this refusal, so that the fetch that is
    // running keeps its state and its listeners undisturbed.
    return tellError(callback, logRefusal(*context_, OrdersManagerErrorType::alreadyFetching));
  }
  context_->log("Getting Orders");
  api->send<GetOrdersOperation>(
      customer, [self = shared_from_this(), callback = std::move(callback)](const auto& orders,
                                                                            const ErrorPtr& error) {
        self->finishFetch(orders, error, callback);
      });
}

void Orders::finishFetch(const std::optional<OrderList>& orders, const ErrorPtr& error,
                         const OrdersCallback& callback) {
  setLastFetch(LastFetch{.date = context_->services().clock->now(), .error = error});
  if (orders) {
    adopt(*orders);
  } else {
    context_->log("Got an error getting orders");
  }
  if (callback) callback(orders, error);
  if (orders) {
    context_->post(SDKNotification::ordersUpdated, *orders);
    updateOrdersWithNoPushToken();
  } else {
    postError(*context_, SDKNotification::ordersError, error);
  }
  isFetching_ = false;
}

void Orders::adopt(const OrderList& orders) {
  setAll(orders);
  open_.rebuild(all_);
  setClosed(closedOrders(orders));
}

OrderPtr Orders::find(std::int64_t id) const {
  const OrderTablePtr table = all_.get();
  return table ? table->find(id) : nullptr;
}

ErrorPtr Orders::recordRefusal(OrdersManagerErrorType type) {
  ErrorPtr error = std::make_shared<const OrdersManagerError>(type);
  setLastFetch(LastFetch{.date = context_->services().clock->now(), .error = error});
  context_->log(error->localizedDescription());
  return error;
}

}  // namespace ovinta
