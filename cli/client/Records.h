#pragma once

#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/Output.h"
#include "cli/client/StoredOrders.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta::cli {

// Records as results to print.

Result resultOf(const Order& order);
Result resultOf(const OrderList& orders);
Result resultOf(const std::vector<CoreOrder>& orders);
Result resultOf(const SiteList& sites);
Result resultOf(const SiteList& sites, const Pagination& pagination);
/// The customer without the token.
Result resultOf(const Customer& customer);
Result resultOf(const std::vector<platform::UserNotificationRequest>& requests);

/// The result of what a pointer or an optional holds; absent for none.
template <class Holder>
std::optional<Result> optionalResult(const Holder& holder) {
  return holder ? std::optional(resultOf(*holder)) : std::nullopt;
}

}  // namespace ovinta::cli
