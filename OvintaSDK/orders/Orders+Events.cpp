#include <charconv>
#include <utility>

#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/customer/Customers.h"
#include "OvintaSDK/orders/Orders.h"

namespace ovinta {
namespace {

/// Changes the order as an accepted event says, and tells whether anything changed.
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
  // `from_chars` does not know a plus sign, so it is taken off here, but not before a minus, which
  // would slip through.
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
void change(Order& order, const platform::Dictionary& userInfo, const Dates& dates) {
  if (const auto state = stateUnder<OrderState>(userInfo, "order_state")) order.setState(*state);
  if (const auto state = stateUnder<CustomerState>(userInfo, "customer_state")) {
    order.setCustomerState(*state);
  }
  if (const auto* text = platform::find<std::string>(userInfo, "eta_at")) {
    if (const auto etaAt = dates.pickupWindow().date(*text)) order.setEtaAt(etaAt);
  }
}

}  // namespace

void Orders::event(const OrderEvent& event, OrderCallback callback) {
  send(event, [self = shared_from_this(), event, callback = std::move(callback)](
                  const auto& accepted, const ErrorPtr& error) {
    self->finishEvent(event, accepted != nullptr, error, callback);
  });
}

void Orders::queueEvent(OrderEvent event) {
  send(std::move(event), [](const auto&, const auto&) {});
}

void Orders::send(OrderEvent event, EventHandler handler) {
  const auto api = APIClient::of(context_);
  if (!api) return;
  const CustomerPtr customer = currentCustomer();
  if (!customer) return;
  const auto onGone = [followed = followed_ ? followed_() : shared_from_this()](
                          const OrderEvent& sent) { followed->markGone(sent); };
  api->send<CreateOrderEventOperation>(customer, std::move(event), onGone, std::move(handler));
}

void Orders::finishEvent(const OrderEvent& event, bool accepted, const ErrorPtr& error,
                         const OrderCallback& callback) {
  if (accepted) {
    context_->log("Successfully created order event");
  } else {
    context_->log("Got an error creating order event");
    postError(*context_, SDKNotification::orderEventError, error);
  }
  const OrderPtr order = find(event.orderID);
  if (!error && order && applyEvent(event, *order)) announce(order);
  if (callback) callback(order, error);
}

void Orders::markGone(const OrderEvent& event) {
  const OrderPtr order = find(event.orderID);
  if (!order) return;
  order->setState(OrderState::gone);
  announce(order);
}

// Tells that the order has changed. `closed` and the order store deliberately wait for the next
// fetch.
void Orders::announce(const OrderPtr& order) {
  open_.rebuild(all_, order.get());
  context_->post(SDKNotification::orderUpdated, order);
}

void Orders::applyPayload(const platform::Dictionary& userInfo) {
  const auto* text = platform::find<std::string>(userInfo, "order_id");
  const auto id = text ? decimalInteger(*text) : std::nullopt;
  const OrderPtr order = id ? find(*id) : nullptr;
  if (!order) return fetch({});
  change(*order, userInfo, context_->dates());
  announce(order);
}

}  // namespace ovinta
