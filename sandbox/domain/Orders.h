#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/Date.h"
#include "sandbox/domain/Refusal.h"
#include "sandbox/domain/Validation.h"
#include "sandbox/domain/World.h"

namespace ovinta::sandbox {

// The rules of orders. Where an order is answered, it is as apps get to see it.

// The customer's side: the token must be a customer's of that world.

/// The orders of that customer, oldest first.
platform::List ordersOf(const World& world, std::string_view token);
Outcome createOrder(World& world, std::string_view token, const platform::Dictionary& info,
                    platform::Date now);
/// Makes an order that is nobody's the customer's own, and puts what is given of the customer's
/// details and the push token on it.
Outcome claimOrder(World& world, std::string_view token, std::string_view redemptionCode,
                   const platform::Dictionary& info, platform::Date now);
/// Answers the order as it is after the event.
Outcome addEvent(World& world, std::string_view token, const platform::Dictionary& event,
                 platform::Date now);

/// The order of the redemption code, whoever asks.
Outcome findOrder(const World& world, std::string_view redemptionCode);

// The merchant's side.

/// Why nothing is told of an order that does not exist.
Refusal unknownOrder();
/// The order as `allOrders` lists it; `id` must be of one that is kept.
platform::Dictionary inspectedOrder(const World& world, std::int64_t id);
/// All orders, oldest first, each with "customer_token" of its owner, when it has one, and
/// "device": what is last known of the customer's device.
platform::List allOrders(const World& world);
/// Creates an order that is nobody's until it is claimed.
Outcome offerOrder(World& world, const platform::Dictionary& info, platform::Date now);
/// The states that a merchant can give an order.
inline constexpr std::array<std::string_view, 4> kMerchantMoves = {"ready", "delayed", "cancelled",
                                                                   "gone"};
/// Moves an order to one of them.
Outcome moveOrder(World& world, std::int64_t id, std::string_view state, platform::Date now);
/// Sets the time at which the customer is expected, as "eta_seconds" of the record from now on.
Outcome estimateArrival(World& world, std::int64_t id, const platform::Dictionary& info,
                        platform::Date now);

/// What a kept record must and may hold.
std::span<const FieldRule> orderRules();

/// Adds a record that keeps to the rules, with what every new order has where it lacks that; or
/// tells what speaks against it and adds nothing.
[[nodiscard]] std::optional<Refusal> restoreOrder(World& world, platform::Dictionary order,
                                                  platform::Date now);

}  // namespace ovinta::sandbox
