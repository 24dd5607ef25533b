#include <charconv>

#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/PostNotification.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {
namespace {

/// Changes the order as an accepted event says; whether anything changed.
bool applyEvent(const OrderEvent& event, Order& order) {
  bool changed = false;
  if (event.customerState && *event.customerState != order.customerState()) {
    order.setCustomerState(*event.customerState);
    changed = true;
  }
  if (event.state && *event.state != order.state()) {
    order.setState(*event.state);
    changed = true;
  }
  if (event.customerRating) {
    const std::string rating = std::to_string(*event.customerRating);
    if (order.customerRating() != rating) {
      order.setCustomerRating(rating);
      changed = true;
    }
  }
  if (event.customerComments && event.customerComments != order.customerComment()) {
    order.setCustomerComment(event.customerComments);
    changed = true;
  }
  return changed;
}

std::optional<std::int64_t> decimalInteger(std::string_view text) {
  // from_chars knows no plus sign; one before a minus must not slip through.
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && rest == end ? std::optional(number) : std::nullopt;
}

/// The state that the text under the key names; absent for anything else.
template <class State>
std::optional<State> stateUnder(const platform::Dictionary& userInfo, std::string_view key) {
  const auto* text = platform::find<std::string>(userInfo, key);
  return text ? stateFromWireString<State>(*text) : std::nullopt;
}

/// Changes the order as the payload of a push says.
void applyPayload(const platform::Dictionary& userInfo, Order& order) {
  if (const auto state = stateUnder<OrderState>(userInfo, "order_state")) order.setState(*state);
  if (const auto state = stateUnder<CustomerState>(userInfo, "customer_state")) {
    order.setCustomerState(*state);
  }
  if (const auto* text = platform::find<std::string>(userInfo, "eta_at")) {
    const auto etaAt = OvintaState::current().pickupWindowFormatter().date(*text);
    if (etaAt) order.setEtaAt(etaAt);
  }
}

}  // namespace

void OrdersManager::event(const Order& order, CustomerState customerState, OrderCallback callback) {
  event(order.id, customerState, std::move(callback));
}

void OrdersManager::event(std::int64_t orderID, CustomerState customerState,
                          OrderCallback callback) {
  sendEvent(OrderEvent::customerStateChange(orderID, customerState, std::nullopt),
            std::move(callback));
}

void OrdersManager::event(std::int64_t orderID, OrderState state, OrderCallback callback) {
  sendEvent(OrderEvent::stateChange(orderID, state), std::move(callback));
}

void OrdersManager::rateOrder(std::int64_t orderID, std::int64_t rating,
                              std::optional<std::string> comments, OrderCallback callback) {
  sendEvent(OrderEvent::rating(orderID, rating, std::move(comments)), std::move(callback));
}

void OrdersManager::sendEvent(const OrderEvent& event, OrderCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) return;
  const CustomerPtr customer = OvintaState::current().customer().current();
  if (!customer) return;
  OvintaState::current().apiQueue().addOperation(std::make_shared<CreateOrderEventOperation>(
      *apiURL, customer, event,
      [this, event, callback = std::move(callback)](const auto& accepted, const ErrorPtr& error) {
        finishEvent(event, accepted != nullptr, error, callback);
      }));
}

void OrdersManager::finishEvent(const OrderEvent& event, bool accepted, const ErrorPtr& error,
                                const OrderCallback& callback) {
  if (accepted) {
    logLine("Successfully created order event");
  } else {
    logLine("Got an error creating order event");
    postNotification(SDKNotification::orderEventError, error);
  }
  const OrderPtr order = findOrder(event.orderID);
  if (!error && order && applyEvent(event, *order)) announce(order);
  if (callback) callback(order, error);
}

void OrdersManager::markOrderGone(const OrderEvent& event) {
  const OrderPtr order = findOrder(event.orderID);
  if (!order) return;
  order->setState(OrderState::gone);
  announce(order);
}

// `closed` and the order store deliberately wait for the next fetch.
void OrdersManager::announce(const OrderPtr& order) {
  rebuildOpen();
  postNotification(SDKNotification::orderUpdated, order);
}

void OrdersManager::updateOrderFromNotification(const platform::Dictionary& userInfo) {
  const auto* text = platform::find<std::string>(userInfo, "order_id");
  const auto id = text ? decimalInteger(*text) : std::nullopt;
  const OrderPtr order = id ? findOrder(*id) : nullptr;
  if (!order) return fetch();
  applyPayload(userInfo, *order);
  announce(order);
}

}  // namespace ovinta
