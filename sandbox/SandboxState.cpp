#include "sandbox/SandboxState.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "sandbox/OrderEvents.h"
#include "sandbox/Sites.h"
#include "sandbox/Validation.h"
#include "sandbox/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;
using Lock = std::lock_guard<std::mutex>;

constexpr std::int64_t kFirstOrderID = 1001;
constexpr std::size_t kTokenLength = 32;
constexpr std::size_t kCodeLength = 6;
constexpr std::string_view kTokenAlphabet = "0123456789abcdef";
/// Without the letters and digits that people take for one another.
constexpr std::string_view kCodeAlphabet = "ABCDEFGHJKLMNPQRSTUVWXYZ23456789";

constexpr std::array<FieldRule, 7> kCustomerRules = {{{"name", checkFilledText, true},
                                                      {"car_type", checkText},
                                                      {"car_color", checkText},
                                                      {"license_plate", checkText},
                                                      {"phone", checkText},
                                                      {"terms_of_service", checkConsent, true},
                                                      {"age_verification", checkConsent, true}}};
constexpr std::size_t kCustomerDetails = 5;

constexpr std::array<FieldRule, 10> kOrderRules = {{{"site_id", checkInteger, true},
                                                    {"partner_identifier", checkFilledText, true},
                                                    {"customer_car_color", checkText},
                                                    {"customer_car_type", checkText},
                                                    {"customer_license_plate", checkText},
                                                    {"customer_name", checkText},
                                                    {"customer_phone", checkText},
                                                    {"push_token", checkText},
                                                    {"state", checkOrderState},
                                                    {"pickup_window", checkPickupWindow}}};

constexpr std::array<FieldRule, 7> kUpdateRules = {{{"customer_car_color", checkText},
                                                    {"customer_car_type", checkText},
                                                    {"customer_license_plate", checkText},
                                                    {"customer_name", checkText},
                                                    {"customer_phone", checkText},
                                                    {"push_token", checkText},
                                                    {"pickup_type", checkText}}};

/// An order's keys that are filled from the customer's when the app leaves them out.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kInherited = {
    {{"customer_name", "name"},
     {"customer_car_type", "car_type"},
     {"customer_car_color", "car_color"},
     {"customer_license_plate", "license_plate"}}};

const std::string& text(const Dictionary& record, std::string_view key) {
  return *platform::find<std::string>(record, key);
}

Refusal unknownOrder() {
  return refusal(Refusal::Kind::unknown, "order", fieldMessage("order", "is unknown"));
}

/// What every new order has, the customer's own words aside.
Dictionary newOrder(std::int64_t id, const Site& site, const Dictionary& customer,
                    platform::Date now) {
  Dictionary order = orderFields(site);
  order.merge(Dictionary{{"id", id},
                         {"state", "created"},
                         {"customer_state", "created"},
                         {"pickup_type", "curbside"},
                         {"created_at", dateText(now)},
                         {"updated_at", dateText(now)}});
  for (const auto& [key, source] : kInherited) {
    const auto detail = customer.find(source);
    if (detail != customer.end()) order.emplace(key, detail->second);
  }
  return order;
}

}  // namespace

SandboxState::SandboxState(std::uint64_t seed, std::function<platform::Date()> now)
    : now_(std::move(now)), generator_(seed) {}

Outcome SandboxState::createCustomer(const Dictionary& info) {
  if (Dictionary errors = fieldErrors(info, kCustomerRules); !errors.empty()) {
    return Refusal{Refusal::Kind::invalid, std::move(errors)};
  }
  Dictionary customer;
  copyFields(info, std::span(kCustomerRules).first<kCustomerDetails>(), customer);
  const Lock lock(mutex_);
  const std::string token = generator_.text(kTokenLength, kTokenAlphabet);
  customer.emplace("api_token", token);
  customers_.emplace(token, customer);
  return customer;
}

std::optional<Dictionary> SandboxState::customer(std::string_view token) const {
  const Lock lock(mutex_);
  const auto customer = customers_.find(token);
  return customer == customers_.end() ? std::nullopt : std::optional(customer->second);
}

List SandboxState::orders(std::string_view token) const {
  const Lock lock(mutex_);
  List list;
  for (const auto& [id, order] : orders_) {
    if (order.customerToken == token) list.emplace_back(order.fields);
  }
  return list;
}

Outcome SandboxState::createOrder(std::string_view token, const Dictionary& info) {
  Dictionary errors = fieldErrors(info, kOrderRules);
  const auto* siteID = platform::find<std::int64_t>(info, "site_id");
  const Site* site = siteID ? findSite(*siteID) : nullptr;
  if (!site) errors.emplace("site_id", List{fieldMessage("site_id", "is unknown")});
  if (!errors.empty()) return Refusal{Refusal::Kind::invalid, std::move(errors)};

  const platform::Date now = now_();
  const Lock lock(mutex_);
  const auto id = kFirstOrderID + static_cast<std::int64_t>(orders_.size());
  Dictionary order = newOrder(id, *site, customers_.find(token)->second, now);
  copyFields(info, kOrderRules, order);
  order.erase("customer_phone");
  order.emplace("display_name", "Order " + text(info, "partner_identifier"));
  order.emplace("redemption_code", makeCode());
  orders_.emplace(id, Order{std::string(token), order, {}});
  return order;
}

Outcome SandboxState::updateOrder(std::string_view token, std::string_view redemptionCode,
                                  const Dictionary& info) {
  Dictionary errors = fieldErrors(info, kUpdateRules);
  if (!info.contains("push_token")) {
    errors.emplace("push_token", List{fieldMessage("push_token", "is missing")});
  }
  const platform::Date now = now_();
  const Lock lock(mutex_);
  Order* order = find(token, redemptionCode);
  if (!order) return unknownOrder();
  if (!errors.empty()) return Refusal{Refusal::Kind::invalid, std::move(errors)};
  copyFields(info, kUpdateRules, order->fields);
  order->fields.erase("customer_phone");
  order->fields.insert_or_assign("updated_at", dateText(now));
  return order->fields;
}

Outcome SandboxState::addEvent(std::string_view token, const Dictionary& event) {
  const auto* id = platform::find<std::int64_t>(event, "order_id");
  if (!id) {
    return refusal(Refusal::Kind::invalid, "order_id",
                   fieldMessage("order_id", "must be an integer"));
  }
  const platform::Date now = now_();
  const Lock lock(mutex_);
  Order* order = find(token, *id);
  if (!order) return unknownOrder();
  if (text(order->fields, "state") == "gone") return Refusal{Refusal::Kind::gone, {}};
  if (Dictionary errors = eventErrors(event); !errors.empty()) {
    return Refusal{Refusal::Kind::invalid, std::move(errors)};
  }
  applyEvent(event, now, order->fields, order->device);
  order->fields.insert_or_assign("updated_at", dateText(now));
  return order->fields;
}

List SandboxState::allOrders() const {
  const Lock lock(mutex_);
  List list;
  for (const auto& [id, order] : orders_) {
    Dictionary shown = order.fields;
    shown.emplace("device", order.device);
    list.emplace_back(std::move(shown));
  }
  return list;
}

Outcome SandboxState::moveOrder(std::int64_t id, std::string_view state) {
  const platform::Date now = now_();
  const Lock lock(mutex_);
  const auto found = orders_.find(id);
  if (found == orders_.end()) return unknownOrder();
  Dictionary& order = found->second.fields;
  const std::string& current = text(order, "state");
  const bool isOpen = isOpenOrderState(current) && text(order, "customer_state") != "completed";
  // Whatever has become of an order, the merchant can still remove it.
  if (current == state || (!isOpen && state != "gone")) {
    return refusal(Refusal::Kind::impossible, "state",
                   fieldMessage("state", std::string("is ") + (isOpen ? current : "final")));
  }
  order.insert_or_assign("state", std::string(state));
  order.insert_or_assign("updated_at", dateText(now));
  return order;
}

SandboxState::Order* SandboxState::find(std::string_view token, std::int64_t id) {
  const auto order = orders_.find(id);
  const bool isOwn = order != orders_.end() && order->second.customerToken == token;
  return isOwn ? &order->second : nullptr;
}

SandboxState::Order* SandboxState::find(std::string_view token, std::string_view redemptionCode) {
  for (auto& [id, order] : orders_) {
    if (order.customerToken == token && text(order.fields, "redemption_code") == redemptionCode) {
      return &order;
    }
  }
  return nullptr;
}

std::string SandboxState::makeCode() {
  while (true) {
    std::string code = generator_.text(kCodeLength, kCodeAlphabet);
    if (std::ranges::none_of(orders_, [&](const auto& entry) {
          return text(entry.second.fields, "redemption_code") == code;
        })) {
      return code;
    }
  }
}

}  // namespace ovinta::sandbox
