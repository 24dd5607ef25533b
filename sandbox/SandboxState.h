#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/Value.h"
#include "sandbox/Refusal.h"
#include "sandbox/SeededGenerator.h"

namespace ovinta::sandbox {

/// What the service knows, and its rules; nothing of HTTP. Records go in and out in the form in
/// which they travel. May be used from any thread. Tokens and codes follow from the seed and the
/// order of the calls.
class SandboxState {
 public:
  /// `now` is called from the threads that call the other functions.
  SandboxState(std::uint64_t seed, std::function<platform::Date()> now);

  Outcome createCustomer(const platform::Dictionary& info);

  /// The customer that the token stands for; absent when there is none.
  std::optional<platform::Dictionary> customer(std::string_view token) const;

  // The customer's side: the token must be a customer's.

  /// The orders of that customer, oldest first.
  platform::List orders(std::string_view token) const;
  Outcome createOrder(std::string_view token, const platform::Dictionary& info);
  /// Sets the push token and what else is given of the customer's details.
  Outcome updateOrder(std::string_view token, std::string_view redemptionCode,
                      const platform::Dictionary& info);
  /// Answers the order as it is after the event.
  Outcome addEvent(std::string_view token, const platform::Dictionary& event);

  // The merchant's side.

  /// All orders, oldest first, each with "device": what is last known of the customer's device.
  platform::List allOrders() const;
  /// Moves an order to a state that a merchant can give it.
  Outcome moveOrder(std::int64_t id, std::string_view state);

 private:
  struct Order {
    std::string customerToken;
    platform::Dictionary fields;
    platform::Dictionary device;
  };

  Order* find(std::string_view token, std::int64_t id);
  Order* find(std::string_view token, std::string_view redemptionCode);
  std::string makeCode();

  const std::function<platform::Date()> now_;
  mutable std::mutex mutex_;
  SeededGenerator generator_;
  std::map<std::string, platform::Dictionary, std::less<>> customers_;
  std::map<std::int64_t, Order> orders_;
};

}  // namespace ovinta::sandbox
