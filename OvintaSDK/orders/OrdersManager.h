#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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

class Orders;

/// Receives the order and the error, either of which may be null; see each operation.
using OrderCallback = std::function<void(OrderPtr, ErrorPtr)>;

/// Receives the orders or the error.
using OrdersCallback = std::function<void(std::optional<OrderList>, ErrorPtr)>;

/// How the last attempt to fetch the orders ended.
struct LastFetch {
  platform::Date date;
  /// Null: it succeeded.
  ErrorPtr error;
};

/// Holds the customer's orders; reached as `Ovinta::orders()`. All methods may be called from any
/// thread and return at once. A callback, which may be empty and must not throw, is called at most
/// once, with no lock held: on the network's callback thread when the service was asked, on a
/// thread of the API queue when the base URL is none, inside the call when the request was refused
/// before. Where the application's own `platform::URLSession` completes a success without data,
/// which that of Linux never does, it is left out, and a fetch stays under way. Each field is safe
/// by itself; nothing is promised across fields: while a fetch completes, `all` may be new and
/// `open` still the old list.
/// It may be destroyed while its requests are under way: they end as they would have.
class OVINTA_EXPORT OrdersManager {
 public:
  OrdersManager();
  /// For the library's own use.
  explicit OrdersManager(std::shared_ptr<Orders> orders);
  ~OrdersManager();
  OrdersManager(const OrdersManager&) = delete;
  OrdersManager& operator=(const OrdersManager&) = delete;

  /// Every order of the last successful fetch, in the service's order; absent before it.
  std::optional<OrderList> all() const;
  /// Replaces the list, as each of these setters does without the null entries. A present one is
  /// also written to the order store, in the background; `open` and `closed` stay as they are.
  void setAll(std::optional<OrderList> orders);

  /// The orders of `all` that are open, in its order.
  std::optional<OrderList> open() const;
  void setOpen(std::optional<OrderList> orders);

  /// The orders of `all` that were not open at the last fetch, most recently updated first.
  std::optional<OrderList> closed() const;
  void setClosed(std::optional<OrderList> orders);

  /// Absent before the first attempt. An attempt refused as `alreadyFetching` does not count.
  std::optional<LastFetch> lastFetch() const;
  void setLastFetch(std::optional<LastFetch> fetch);

  /// Refreshes the orders, splits them and has them written to the order store. Posts
  /// `SDKNotification::ordersUpdated` after the callback of a success, `ordersError` after that of
  /// a failure; open orders without a push token then get the device's. Errors:
  /// `OrdersManagerError` of type `loadingCustomer`, `loadingApiUrl` or, with no notification,
  /// `alreadyFetching`; those of the service. The fetch lasts until the
  /// last callback and observer has returned: one that is started from there is refused.
  void fetch(OrdersCallback callback = {});

  /// Creates an order for the current customer; with none, first creates the customer from the
  /// order's customer fields, which counts as consent to both terms and age verification. Reports
  /// the location permission for the new order. The lists change with the next fetch. Errors:
  /// `OrdersManagerError` of type `loadingApiUrl` or `loadingCustomer` (no customer and no name, or
  /// the customer could not be created), also kept in `lastFetch`; those of the service.
  void create(const CreateOrderInfo& info, OrderCallback callback = {});
  void create(std::int64_t siteID, std::string partnerIdentifier, const CustomerInfo& customerInfo,
              std::optional<PickupWindow> pickupWindow, OrderState state,
              OrderCallback callback = {});
  void create(std::int64_t siteID, std::string partnerIdentifier, const CustomerInfo& customerInfo,
              std::optional<PickupWindow> pickupWindow, OrderCallback callback = {});

  /// Looks an order up by its redemption code. Errors: `OrdersManagerError` of type
  /// `loadingApiUrl`, also kept in `lastFetch` and posted as `SDKNotification::ordersError`; those
  /// of the service.
  void fetchWithRedemptionCode(const std::string& redemptionCode, OrderCallback callback = {});

  /// Claims the order of a redemption code for the current customer, with the device's push token.
  /// Reports the location permission for it. The lists change with the next fetch. Errors:
  /// `OrdersManagerError` of type `loadingApiUrl`, also kept in `lastFetch`, or `loadingCustomer`;
  /// those of the service.
  void claimWithRedemptionCode(const std::string& redemptionCode, const CustomerInfo& customerInfo,
                               std::optional<std::string> pickupType,
                               const OrderCallback& callback = {});
  void claimWithRedemptionCode(const std::string& redemptionCode, const CustomerInfo& customerInfo,
                               const OrderCallback& callback = {});
  /// The same; with no current customer, first creates one from the claim's customer fields and the
  /// consent. Further errors: `loadingCustomer` also when there is no name or the customer could
  /// not be created; `CustomerManagerError` of type `missingCustomerConsent`. `lastFetch` stays.
  void claimWithRedemptionCode(const std::string& redemptionCode,
                               const ClaimOrderInfo& claimOrderInfo,
                               const std::optional<CustomerConsent>& customerConsent,
                               const OrderCallback& callback = {});

  /// Reports a step of the customer's journey. When the service accepts it, the order in `all`
  /// changes and `SDKNotification::orderUpdated` is posted; when it refuses, `orderEventError`. The
  /// callback receives the order found in `all`, or null, and the error, or null; without a
  /// customer or base URL, and for an order that the service says is gone, it is never called.
  void event(const Order& order, CustomerState customerState, OrderCallback callback = {});
  void event(std::int64_t orderID, CustomerState customerState, OrderCallback callback = {});
  /// Reports a state of the order; otherwise the same.
  void event(std::int64_t orderID, OrderState state, OrderCallback callback = {});
  /// Rates the order; otherwise the same.
  void rateOrder(std::int64_t orderID, std::int64_t rating, std::optional<std::string> comments,
                 OrderCallback callback = {});

  /// Applies the payload of a push: "order_id" (a decimal text), and any of "order_state",
  /// "customer_state" (wire strings) and "eta_at" (e.g. "2021-03-04T15:30:00.000-0500"). Posts
  /// `SDKNotification::orderUpdated`. Unknown values are ignored; without an identifier, or for an
  /// order that is not in `all`, all orders are fetched instead.
  void updateOrderFromNotification(const platform::Dictionary& userInfo);

  /// Gives the open orders that have a redemption code and no push token the device's, here and at
  /// the service; the requests' outcome is not reported.
  void updateOrdersWithNoPushToken();
  /// Gives the open orders that have a redemption code and another push token this one, likewise.
  /// It does not become the device's.
  void updatePushTokensWithNewPushToken(const std::string& pushToken);

 private:
  const std::shared_ptr<Orders> orders_;
};

}  // namespace ovinta
