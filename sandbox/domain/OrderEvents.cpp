#include "sandbox/domain/OrderEvents.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sandbox/domain/Validation.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;

constexpr std::array<FieldRule, 6> kLocationRules = {{{"longitude", checkLongitude, true},
                                                      {"latitude", checkLatitude, true},
                                                      {"accuracy", checkNumber},
                                                      {"speed", checkNumber},
                                                      {"beacons", checkBeacons},
                                                      {"eta_seconds", checkSeconds}}};

constexpr std::array<FieldRule, 3> kStateRules = {{{"customer_state", checkCustomerState},
                                                   {"state", checkOrderState},
                                                   {"eta_seconds", checkSeconds}}};

constexpr std::array<FieldRule, 1> kPermissionRules = {
    {{"location_permission", checkLocationPermission, true}}};

constexpr std::array<FieldRule, 2> kRatingRules = {
    {{"customer_rating_value", checkRating, true}, {"customer_rating_comments", checkText}}};

struct StateKey {
  std::string_view name;
  bool (*isOpen)(std::string_view state);
};

constexpr std::array<StateKey, 2> kStateKeys = {
    {{"customer_state", isOpenCustomerState}, {"state", isOpenOrderState}}};

struct EventType {
  std::string_view name;
  std::span<const FieldRule> rules;
};

constexpr std::array<EventType, 4> kEventTypes = {{{"location_update", kLocationRules},
                                                   {"state_change", kStateRules},
                                                   {"permission_update", kPermissionRules},
                                                   {"customer_rating", kRatingRules}}};

const EventType* typeOf(const Dictionary& event) {
  const auto* name = platform::find<std::string>(event, "event_type");
  const auto type = std::ranges::find_if(
      kEventTypes, [&](const EventType& candidate) { return name && candidate.name == *name; });
  return type == kEventTypes.end() ? nullptr : &*type;
}

void applyStates(const Dictionary& content, platform::Date now, Dictionary& order) {
  for (const StateKey& key : kStateKeys) {
    const auto* state = platform::find<std::string>(content, key.name);
    if (!state) continue;
    order.insert_or_assign(std::string(key.name), *state);
    if (*state == "completed") order.emplace("completed_at", dateText(now));
  }
}

}  // namespace

Dictionary eventErrors(const Dictionary& event) {
  const EventType* type = typeOf(event);
  if (!type) return {{"event_type", List{fieldMessage("event_type", "is unknown")}}};
  Dictionary errors = fieldErrors(event, type->rules);
  if (type->name == "state_change" && errors.empty() &&
      !platform::find<std::string>(event, "customer_state") &&
      !platform::find<std::string>(event, "state")) {
    errors.emplace("state", List{fieldMessage("state", "of the customer or order is missing")});
  }
  return errors;
}

Dictionary eventContent(const Dictionary& event) {
  Dictionary content;
  copyFields(event, typeOf(event)->rules, content);
  return content;
}

Dictionary reopenings(const Dictionary& event, const Dictionary& order) {
  const Dictionary content = eventContent(event);
  Dictionary errors;
  for (const StateKey& key : kStateKeys) {
    const auto* next = platform::find<std::string>(content, key.name);
    const auto& current = *platform::find<std::string>(order, key.name);
    if (!next || *next == current || key.isOpen(current)) continue;
    errors.emplace(key.name, List{fieldMessage(key.name, "is final")});
  }
  return errors;
}

void applyEvent(const Dictionary& event, platform::Date now, Dictionary& order,
                Dictionary& device) {
  const Dictionary content = eventContent(event);
  applyStates(content, now, order);
  if (const auto* seconds = platform::find<std::int64_t>(content, "eta_seconds")) {
    order.insert_or_assign("eta_at", dateText(now + std::chrono::seconds(*seconds)));
  }
  if (const auto* rating = platform::find<std::int64_t>(content, "customer_rating_value")) {
    order.insert_or_assign("customer_rating_value_string", std::to_string(*rating));
  }
  copyFields(content, std::span(kRatingRules).last<1>(), order);
  copyFields(content, std::span(kLocationRules).first<5>(), device);
  copyFields(content, kPermissionRules, device);
}

}  // namespace ovinta::sandbox
