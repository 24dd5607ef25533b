#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "../../platform/Date.h"
#include "../../platform/Export.h"
#include "../../platform/Value.h"
#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/model/ClaimOrderInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/Order.h"
#include "OvintaSDK/model/OrderEvent.h"
#include "OvintaSDK/orders/OrdersManagerError.h"

namespace ovinta {

class Library;
class Orders;

/// Receives the order, or null and the error. After an event both may be null, or neither; see
/// `OrdersManager::event`.
using OrderCallback = std::function<void(OrderPtr, ErrorPtr)>;

/// Receives the orders, none of them null, or the error.
using OrdersCallback = std::function<void(std::optional<OrderList>, ErrorPtr)>;

/// How the last attempt to fetch the orders ended. Other requests leave their refusals here too
/// where they say so. A plain value.
struct LastFetch {
  /// When it ended, by the clock of the platform.
  platform::Date date;
  /// Null: it succeeded.
  ErrorPtr error;
};

/// Holds the customer's orders; reached as `Ovinta::orders()`. All methods may be called from any
/// thread and return at once. A callback, which may be empty and must not throw, is called at most
/// once, with no lock held: on the callback thread of the URL session when the service was asked,
/// on a thread of the API queue when the stored base URL is no URL, inside the call when the
/// request was refused before. Where the application's own `platform::URLSession` completes a
/// success without data, which that of Linux never does, it is left out, and a fetch stays under
/// way. "The service's errors" are those of a request (see `OvintaError`). Each field is safe by
/// itself; nothing is promised across fields: while a fetch completes, `all` may be new and `open`
/// still the old list. The lists hold no null. It may be destroyed while its requests are under
/// way: they end as they would have.
class OVINTA_EXPORT OrdersManager {
 public:
  /// One of the application's own: it has lists of its own and the customer of
  /// `Ovinta::customer()`. The user's location is followed for the orders of `Ovinta::orders()`
  /// alone.
  OrdersManager();
  ~OrdersManager();
  OrdersManager(const OrdersManager&) = delete;
  OrdersManager& operator=(const OrdersManager&) = delete;

  /// Every order of the last successful fetch, in the service's order; absent before it, also after
  /// a restart.
  std::optional<OrderList> all() const;
  /// Replaces the list; null entries are left out, here and in the next two. A present list is also
  /// written to the order store, in the background; `open` and `closed` stay as they are.
  void setAll(std::optional<OrderList> orders);

  /// The orders of `all` that are open (`Order::isOpen`), in its order; absent before the first
  /// fetch. Up to date after each fetch, event and push.
  std::optional<OrderList> open() const;
  /// Replaces the list, in memory only, until the next fetch, event or push.
  void setOpen(std::optional<OrderList> orders);

  /// The orders of `all` that were not open at the last fetch, most recently updated first, those
  /// without `Order::updatedAt` last; absent before it.
  std::optional<OrderList> closed() const;
  /// Replaces the list, in memory only, until the next fetch.
  void setClosed(std::optional<OrderList> orders);

  /// Absent before the first attempt. An attempt refused as `alreadyFetching` does not count.
  std::optional<LastFetch> lastFetch() const;
  /// Replaces the record until the next attempt.
  void setLastFetch(std::optional<LastFetch> fetch);

  /// Refreshes the orders, splits them and has them written to the order store. Posts
  /// `SDKNotification::ordersUpdated` after the callback of a success, `ordersError` after that of
  /// a failure; open orders without a push token then get the device's. Errors:
  /// `OrdersManagerError` of type `loadingCustomer`, `loadingApiUrl` or, with no notification,
  /// `alreadyFetching`; the service's. On failure the lists stay as they are. The fetch lasts until
  /// the last callback and observer has returned: one that is started from there is refused.
  void fetch(OrdersCallback callback = {});

  /// Creates an order for the current customer; with none, first creates the customer from the
  /// order's customer fields, which counts as consent to both terms and age verification. Reports
  /// the location permission for the new order. The lists change with the next fetch. Errors:
  /// `OrdersManagerError` of type `loadingApiUrl` or `loadingCustomer` (no customer and no name, or
  /// the customer could not be created), also kept in `lastFetch`; the service's.
  void create(const CreateOrderInfo& info, OrderCallback callback = {});
  /// The same, from its parts and the device's push token; without a state the service chooses.
  void create(std::int64_t siteID, std::string partnerIdentifier, const CustomerInfo& customerInfo,
              std::optional<PickupWindow> pickupWindow, OrderState state,
              OrderCallback callback = {});
  void create(std::int64_t siteID, std::string partnerIdentifier, const CustomerInfo& customerInfo,
              std::optional<PickupWindow> pickupWindow, OrderCallback callback = {});

  /// Looks an order up by its redemption code, for which no customer is needed. The lists stay as
  /// they are. Errors: `OrdersManagerError` of type `loadingApiUrl`, also kept in `lastFetch` and
  /// posted as `SDKNotification::ordersError`; the service's.
  void fetchWithRedemptionCode(const std::string& redemptionCode, OrderCallback callback = {});

  /// Claims the order of a redemption code for the current customer, with the device's push token.
  /// Reports the location permission for it. The lists change with the next fetch. Errors:
  /// `OrdersManagerError` of type `loadingApiUrl`, also kept in `lastFetch`, or `loadingCustomer`;
  /// the service's.
  void claimWithRedemptionCode(const std::string& redemptionCode, const CustomerInfo& customerInfo,
                               std::optional<std::string> pickupType, OrderCallback callback = {});
  void claimWithRedemptionCode(const std::string& redemptionCode, const CustomerInfo& customerInfo,
                               OrderCallback callback = {});
  /// The same; with no current customer, first creates one from the claim's customer fields and the
  /// consent. Further errors: `loadingCustomer` also when there is no name or the customer could
  /// not be created; `CustomerManagerError` of type `missingCustomerConsent`. `lastFetch` stays.
  void claimWithRedemptionCode(const std::string& redemptionCode,
                               const ClaimOrderInfo& claimOrderInfo,
                               const std::optional<CustomerConsent>& customerConsent,
                               OrderCallback callback = {});

  /// Reports a step of the customer's journey. When the service accepts it, the order in `all`
  /// changes and, if that made a difference, `SDKNotification::orderUpdated` is posted; when it
  /// fails, `orderEventError`. The callback receives the order found in `all`, or null, and the
  /// error, one of the service's, or null. Without a customer or base URL nothing is sent, and for
  /// an order that the service says is gone, which then becomes `OrderState::gone`, the event has
  /// done its work: in neither case is the callback called. `closed` changes with the next fetch.
  void event(const Order& order, CustomerState customerState, OrderCallback callback = {});
  void event(std::int64_t orderID, CustomerState customerState, OrderCallback callback = {});
  /// Reports a step of the order; otherwise the same.
  void event(std::int64_t orderID, OrderState state, OrderCallback callback = {});
  /// Rates the order, on the service's scale; otherwise the same.
  void rateOrder(std::int64_t orderID, std::int64_t rating, std::optional<std::string> comments,
                 OrderCallback callback = {});

  /// Applies the payload of a push: "order_id" (a decimal text), and any of "order_state",
  /// "customer_state" (wire strings, see `StateRow`) and "eta_at" (e.g.
  /// "2021-03-04T15:30:00.000-0500"). Posts `SDKNotification::orderUpdated` inside the call.
  /// Unknown values are ignored; without an identifier, or for an order that is not in `all`, all
  /// orders are fetched instead (see `fetch`).
  void updateOrderFromNotification(const platform::Dictionary& userInfo);

  /// Gives the open orders that have a redemption code and no push token the device's, here and at
  /// the service. How the requests end is not reported; without a device's token, a customer or a
  /// base URL, whose absence is logged, nothing is sent.
  void updateOrdersWithNoPushToken();
  /// Gives the open orders that have a redemption code and another push token this one, likewise.
  /// It does not become the device's.
  void updatePushTokensWithNewPushToken(const std::string& pushToken);

 private:
  friend class Library;
  explicit OrdersManager(std::shared_ptr<Orders> orders) : orders_(std::move(orders)) {}

  const std::shared_ptr<Orders> orders_;
};

}  // namespace ovinta
