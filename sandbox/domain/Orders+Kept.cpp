#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Orders.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;

constexpr std::int64_t kFirstOrderID = 1001;
constexpr std::size_t kCodeLength = 6;
/// The characters of redemption codes, without the letters and digits that people take for one
/// another.
constexpr std::string_view kCodeAlphabet = "ABCDEFGHJKLMNPQRSTUVWXYZ23456789";

constexpr std::int64_t kLargestID = std::int64_t{1} << 53;

Complaint checkID(const platform::Value& value) {
  return checkIntegerRange(value, 1, kLargestID, "must be an integer from 1 to 9007199254740992");
}

Complaint checkDevice(const platform::Value& value) {
  return value.as<Dictionary>() ? std::nullopt : Complaint("must be a record");
}

constexpr std::array<FieldRule, 24> kOrderRules = {{
    {"id", checkID},
    {"site_id", checkInteger, true},
    {"partner_identifier", checkFilledText, true},
    {"state", checkOrderState},
    {"customer_state", checkCustomerState},
    {"redemption_code", checkFilledText},
    {"redeemed_at", checkDate},
    {"display_name", checkText},
    {"pickup_window", checkPickupWindow},
    {"pickup_type", checkText},
    {"eta_at", checkDate},
    {"completed_at", checkDate},
    {"created_at", checkDate},
    {"updated_at", checkDate},
    {"customer_rating_value_string", checkText},
    {"customer_rating_comments", checkText},
    {"customer_name", checkText},
    {"customer_phone", checkText},
    {"customer_car_type", checkText},
    {"customer_car_color", checkText},
    {"customer_license_plate", checkText},
    {"push_token", checkText},
    {"customer_token", checkFilledText},
    {"device", checkDevice},
}};

std::string newCode(World& world) {
  while (true) {
    std::string code = world.generator.text(kCodeLength, kCodeAlphabet);
    if (!world.ordersByCode.contains(code)) return code;
  }
}

std::int64_t newID(const World& world) {
  return world.orders.empty() ? kFirstOrderID
                              : std::max(kFirstOrderID, world.orders.rbegin()->first + 1);
}

/// What speaks against adding the order to what the world holds; absent when nothing does.
std::optional<Refusal> conflict(const World& world, const Dictionary& order) {
  if (!world.sites.contains(*platform::find<std::int64_t>(order, "site_id"))) {
    return invalid("site_id", "is unknown");
  }
  const auto* owner = platform::find<std::string>(order, "customer_token");
  if (owner && !findCustomer(world, *owner)) return invalid("customer_token", "is unknown");
  const auto* id = platform::find<std::int64_t>(order, "id");
  if (id && world.orders.contains(*id)) return invalid("id", "is taken");
  // A snapshot with a larger one could not be put back.
  if (!id && newID(world) > kLargestID) return invalid("id", "of a new order would be too large");
  const auto* code = platform::find<std::string>(order, "redemption_code");
  if (code && world.ordersByCode.contains(*code)) return invalid("redemption_code", "is taken");
  return std::nullopt;
}

}  // namespace

std::span<const FieldRule> orderRules() { return kOrderRules; }

std::optional<Refusal> restoreOrder(World& world, Dictionary order, platform::Date now) {
  if (auto refused = conflict(world, order)) return refused;
  order.emplace("id", newID(world));
  order.emplace("state", "created");
  order.emplace("customer_state", "created");
  order.emplace("pickup_type", "curbside");
  order.emplace("created_at", dateText(now));
  order.emplace("updated_at", dateText(now));
  order.emplace("display_name",
                "Order " + *platform::find<std::string>(order, "partner_identifier"));
  if (!order.contains("redemption_code")) order.emplace("redemption_code", newCode(world));
  const std::int64_t id = *platform::find<std::int64_t>(order, "id");
  world.ordersByCode.emplace(*platform::find<std::string>(order, "redemption_code"), id);
  world.orders.emplace(id, std::move(order));
  return std::nullopt;
}

}  // namespace ovinta::sandbox
