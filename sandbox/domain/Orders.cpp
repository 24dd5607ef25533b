#include "sandbox/domain/Orders.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <utility>

#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/OrderEvents.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;

constexpr std::array<FieldRule, 10> kNewOrderRules = {
    {{"site_id", checkInteger, true},
     {"partner_identifier", checkFilledText, true},
     {"customer_phone", checkText},
     {"customer_car_color", checkText},
     {"customer_car_type", checkText},
     {"customer_license_plate", checkText},
     {"customer_name", checkText},
     {"push_token", checkText},
     {"state", checkOrderState},
     {"pickup_window", checkPickupWindow}}};

constexpr std::array<FieldRule, 7> kClaimRules = {{{"customer_phone", checkText},
                                                   {"customer_car_color", checkText},
                                                   {"customer_car_type", checkText},
                                                   {"customer_license_plate", checkText},
                                                   {"customer_name", checkText},
                                                   {"push_token", checkText},
                                                   {"pickup_type", checkText}}};

constexpr std::array<FieldRule, 1> kEstimateRules = {{{"eta_seconds", checkSeconds, true}}};

/// An order's keys that are filled from the customer's when the app leaves them out.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kInherited = {
    {{"customer_name", "name"},
     {"customer_phone", "phone"},
     {"customer_car_type", "car_type"},
     {"customer_car_color", "car_color"},
     {"customer_license_plate", "license_plate"}}};

Dictionary withSite(const World& world, Dictionary order) {
  const auto site = world.sites.find(*platform::find<std::int64_t>(order, "site_id"));
  order.merge(orderFields(site->second));
  return order;
}

Dictionary shownOrder(const World& world, Dictionary order) {
  for (const char* key : {"customer_token", "customer_phone", "device"}) order.erase(key);
  return withSite(world, std::move(order));
}

bool isOwnedBy(const Dictionary& order, std::string_view token) {
  const auto* owner = platform::find<std::string>(order, "customer_token");
  return owner && *owner == token;
}

bool isOpen(const Dictionary& order) {
  return isOpenOrderState(textOf(order, "state")) &&
         isOpenCustomerState(textOf(order, "customer_state"));
}

void inherit(const World& world, std::string_view token, Dictionary& order) {
  const Dictionary& customer = *findCustomer(world, token);
  for (const auto& [key, source] : kInherited) {
    const auto detail = customer.find(source);
    if (detail != customer.end()) order.emplace(key, detail->second);
  }
}

/// How much of a text an event tells: of those that are kept there are many.
constexpr std::size_t kLongestNote = 1000;

/// Has it told what has become of the order.
void noteEvent(World& world, const Dictionary& order, platform::Date now, std::string_view by,
               std::string_view event, Dictionary content = {}) {
  for (auto& [key, value] : content) {
    if (const auto* text = value.as<std::string>()) value = cutShort(*text, kLongestNote);
  }
  content.insert_or_assign("order_id", order.find("id")->second);
  content.insert_or_assign("time", dateText(now));
  content.insert_or_assign("by", by);
  content.insert_or_assign("event", event);
  for (const char* key : {"state", "customer_state"}) {
    content.insert_or_assign(key, order.find(key)->second);
  }
  world.news.push_back(std::move(content));
}

/// Adds the order that the request describes; an empty `owner` leaves it to be claimed.
Outcome placeOrder(World& world, const Dictionary& info, std::string_view owner,
                   platform::Date now) {
  if (auto refused = invalid(fieldErrors(info, kNewOrderRules))) return *std::move(refused);
  Dictionary order;
  copyFields(info, std::span(kNewOrderRules), order);
  if (!owner.empty()) {
    order.emplace("customer_token", owner);
    inherit(world, owner, order);
  }
  if (auto refused = restoreOrder(world, std::move(order), now)) return *std::move(refused);
  const Dictionary& placed = world.orders.rbegin()->second;
  noteEvent(world, placed, now, owner.empty() ? "merchant" : "customer", "created");
  return shownOrder(world, placed);
}

/// The order of that code, to be changed if the world may be; null when there is none.
auto* findByCode(auto& world, std::string_view code) {
  const auto found = world.ordersByCode.find(code);
  return found == world.ordersByCode.end() ? nullptr : &world.orders.find(found->second)->second;
}

}  // namespace

Refusal unknownOrder() {
  return refusal(Refusal::Kind::unknown, "order", fieldMessage("order", "is unknown"));
}

List ordersOf(const World& world, std::string_view token) {
  List list;
  for (const auto& [id, order] : world.orders) {
    if (isOwnedBy(order, token)) list.emplace_back(shownOrder(world, order));
  }
  return list;
}

Outcome createOrder(World& world, std::string_view token, const Dictionary& info,
                    platform::Date now) {
  const auto* state = platform::find<std::string>(info, "state");
  if (state && isOrderState(*state) && !isOpenOrderState(*state)) {
    return invalid("state", "of a new order cannot be final");
  }
  return placeOrder(world, info, token, now);
}

Outcome offerOrder(World& world, const Dictionary& info, platform::Date now) {
  return placeOrder(world, info, {}, now);
}

Outcome findOrder(const World& world, std::string_view redemptionCode) {
  const Dictionary* found = findByCode(world, redemptionCode);
  if (!found) return unknownOrder();
  if (textOf(*found, "state") == "gone") return Refusal{Refusal::Kind::gone, {}};
  return shownOrder(world, *found);
}

Outcome claimOrder(World& world, std::string_view token, std::string_view redemptionCode,
                   const Dictionary& info, platform::Date now) {
  Dictionary errors = fieldErrors(info, kClaimRules);
  if (!info.contains("push_token")) {
    errors.emplace("push_token", List{fieldMessage("push_token", "is missing")});
  }
  Dictionary* const found = findByCode(world, redemptionCode);
  if (!found) return unknownOrder();
  Dictionary& order = *found;
  const bool isNobodys = !order.contains("customer_token");
  if (!isNobodys && !isOwnedBy(order, token)) {
    return refusal(Refusal::Kind::unknown, "order", fieldMessage("order", "is another customer's"));
  }
  if (textOf(order, "state") == "gone") return Refusal{Refusal::Kind::gone, {}};
  if (auto refused = invalid(std::move(errors))) return *std::move(refused);
  if (isNobodys && !isOpen(order)) return invalid("state", "is final");
  if (isNobodys) {
    order.emplace("customer_token", token);
    order.emplace("redeemed_at", dateText(now));
  }
  copyFields(info, kClaimRules, order);
  inherit(world, token, order);
  order.insert_or_assign("updated_at", dateText(now));
  noteEvent(world, order, now, "customer", isNobodys ? "claimed" : "updated");
  return shownOrder(world, order);
}

Outcome addEvent(World& world, std::string_view token, const Dictionary& event,
                 platform::Date now) {
  const auto* id = platform::find<std::int64_t>(event, "order_id");
  if (!id) return invalid("order_id", "must be an integer");
  const auto found = world.orders.find(*id);
  if (found == world.orders.end() || !isOwnedBy(found->second, token)) return unknownOrder();
  Dictionary& order = found->second;
  if (textOf(order, "state") == "gone") return Refusal{Refusal::Kind::gone, {}};
  if (auto refused = invalid(eventErrors(event))) return *std::move(refused);
  if (auto refused = invalid(reopenings(event, order))) return *std::move(refused);
  const auto* known = platform::find<Dictionary>(order, "device");
  Dictionary device = known ? *known : Dictionary();
  applyEvent(event, now, order, device);
  order.insert_or_assign("device", std::move(device));
  order.insert_or_assign("updated_at", dateText(now));
  noteEvent(world, order, now, "customer", *platform::find<std::string>(event, "event_type"),
            eventContent(event));
  return shownOrder(world, order);
}

Dictionary inspectedOrder(const World& world, std::int64_t id) {
  return withSite(world, world.orders.find(id)->second);
}

List allOrders(const World& world) {
  List list;
  for (const auto& [id, order] : world.orders) list.emplace_back(withSite(world, order));
  return list;
}

Outcome moveOrder(World& world, std::int64_t id, std::string_view state, platform::Date now) {
  if (std::ranges::find(kMerchantMoves, state) == kMerchantMoves.end()) {
    return refusal(Refusal::Kind::unknown, "state", fieldMessage("state", "is no merchant's"));
  }
  const auto found = world.orders.find(id);
  if (found == world.orders.end()) return unknownOrder();
  Dictionary& order = found->second;
  const std::string& current = textOf(order, "state");
  // Whatever has become of an order, the merchant can still remove it.
  if (current == state || (!isOpen(order) && state != "gone")) {
    return refusal(Refusal::Kind::impossible, "state",
                   fieldMessage("state", std::string("is ") + (isOpen(order) ? current : "final")));
  }
  order.insert_or_assign("state", std::string(state));
  order.insert_or_assign("updated_at", dateText(now));
  noteEvent(world, order, now, "merchant", "state_change");
  return shownOrder(world, order);
}

Outcome estimateArrival(World& world, std::int64_t id, const Dictionary& info, platform::Date now) {
  const auto found = world.orders.find(id);
  if (found == world.orders.end()) return unknownOrder();
  if (auto refused = invalid(fieldErrors(info, kEstimateRules))) return *std::move(refused);
  Dictionary& order = found->second;
  if (!isOpen(order)) {
    return refusal(Refusal::Kind::impossible, "state", fieldMessage("state", "is final"));
  }
  const std::chrono::seconds seconds(*platform::find<std::int64_t>(info, "eta_seconds"));
  order.insert_or_assign("eta_at", dateText(now + seconds));
  order.insert_or_assign("updated_at", dateText(now));
  noteEvent(world, order, now, "merchant", "estimate", {{"eta_seconds", seconds.count()}});
  return shownOrder(world, order);
}

}  // namespace ovinta::sandbox
