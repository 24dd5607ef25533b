#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "OvintaSDK/api/APIClient.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/orders/OpenOrders.h"
#include "OvintaSDK/orders/OrderTable.h"
#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {

class Customers;

/// What an `OrdersManager` and its requests in flight share, with all that it does.
class Orders : public std::enable_shared_from_this<Orders> {
 public:
  /// `customers` is asked when the customer is needed, `followed` for those that learn that an
  /// order is gone; without it these do.
  Orders(ContextPtr context, std::function<std::shared_ptr<Customers>()> customers,
         std::function<std::shared_ptr<Orders>()> followed = {})
      : context_(std::move(context)),
        customers_(std::move(customers)),
        followed_(std::move(followed)) {}

  std::optional<OrderList> all() const;
  void setAll(std::optional<OrderList> orders);
  std::optional<OrderList> open() const { return open_.get(); }
  void setOpen(std::optional<OrderList> orders);
  std::optional<OrderList> closed() const { return closed_.get(); }
  void setClosed(std::optional<OrderList> orders);
  std::optional<LastFetch> lastFetch() const { return lastFetch_.get(); }
  void setLastFetch(std::optional<LastFetch> fetch) { lastFetch_.set(std::move(fetch)); }

  void fetch(OrdersCallback callback);

  void create(const CreateOrderInfo& info, OrderCallback callback);
  /// Creates an order from its parts and the device's push token.
  void create(std::int64_t siteID, std::string partnerIdentifier, const CustomerInfo& customerInfo,
              std::optional<PickupWindow> pickupWindow, std::optional<OrderState> state,
              OrderCallback callback);

  void fetchWithRedemptionCode(const std::string& redemptionCode, OrderCallback callback);
  void claim(const std::string& redemptionCode, const CustomerInfo& customerInfo,
             std::optional<std::string> pickupType, OrderCallback callback);
  void claim(const std::string& redemptionCode, const ClaimOrderInfo& info,
             const std::optional<CustomerConsent>& consent, OrderCallback callback);

  /// Sends the event, has it change the order, and reports the outcome.
  void event(const OrderEvent& event, OrderCallback callback = {});
  /// Sends the event; only an answer that the order is gone has a consequence.
  void queueEvent(OrderEvent event);
  void applyPayload(const platform::Dictionary& userInfo);

  void updateOrdersWithNoPushToken();
  void updatePushTokens(const std::string& pushToken);

 private:
  using EventHandler = std::function<void(std::shared_ptr<const OrderEvent>, ErrorPtr)>;

  // Fetching.
  void finishFetch(const std::optional<OrderList>& orders, const ErrorPtr& error,
                   const OrdersCallback& callback);
  void adopt(const OrderList& orders);
  OrderTablePtr takeUnsynced();
  OrderPtr find(std::int64_t id) const;
  /// Makes the error of a refusal, keeps it in `lastFetch` and logs it.
  ErrorPtr recordRefusal(OrdersManagerErrorType type);

  // Creating.
  CustomerPtr currentCustomer() const;
  /// The customer that a request to create or claim an order describes: vehicle fields are empty
  /// where the request has none, the phone stays absent.
  template <class Request>
  static CustomerInfo customerInfoOf(const Request& request) {
    return {.name = request.customerName.value_or(""),
            .carType = request.customerCarType.value_or(""),
            .carColor = request.customerCarColor.value_or(""),
            .licensePlate = request.customerLicensePlate.value_or(""),
            .phone = request.customerPhone};
  }
  void createCustomer(const APIClient& api, const CreateOrderInfo& info, OrderCallback callback);
  void createOrder(const APIClient& api, const CustomerPtr& customer, const CreateOrderInfo& info,
                   OrderCallback callback);
  void reportPermission(const Order& order);
  void putPushToken(const std::string& pushToken,
                    const std::function<bool(const Order&)>& isWanted);

  // Claiming.
  void claimFor(const CustomerPtr& customer, const APIClient& api,
                const std::string& redemptionCode, const ClaimOrderInfo& info,
                OrderCallback callback);
  void logClaim(const std::string& redemptionCode) const;

  // Events.
  void send(OrderEvent event, EventHandler handler);
  void finishEvent(const OrderEvent& event, bool accepted, const ErrorPtr& error,
                   const OrderCallback& callback);
  void markGone(const OrderEvent& event);
  void announce(const OrderPtr& order);

  const ContextPtr context_;
  const std::function<std::shared_ptr<Customers>()> customers_;
  const std::function<std::shared_ptr<Orders>()> followed_;
  /// Whether a fetch is in flight.
  std::atomic<bool> isFetching_ = false;
  std::mutex settingAll_;
  /// The lists that `all` was set to and that are not in the store yet, oldest first; there is one
  /// for each operation that the store's queue has.
  std::deque<OrderTablePtr> unsynced_;
  /// Null where `all` is absent.
  Guarded<OrderTablePtr> all_;
  OpenOrders open_;
  Guarded<std::optional<OrderList>> closed_;
  Guarded<std::optional<LastFetch>> lastFetch_;
};

}  // namespace ovinta
