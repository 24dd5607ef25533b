#pragma once

#include "OvintaSDK/OvintaSDK.h"
#include "platform/Value.h"

namespace ovinta::cli {

// Records as values to print.

platform::Value valueOf(const Order& order);
platform::Value valueOf(const Site& site);
platform::Value valueOf(const OrderList& orders);
platform::Value valueOf(const SiteList& sites);
/// All but the token.
platform::Value valueOf(const Customer& customer);

}  // namespace ovinta::cli
