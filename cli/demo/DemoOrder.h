#pragma once

#include <cstdint>

#include "OvintaSDK/OvintaSDK.h"

namespace ovinta::cli {

/// The site of the sandbox at which the trips end.
inline constexpr std::int64_t kSite = 42;

/// Metres to the site at which the customer counts as being near, and as having arrived.
inline constexpr double kNearby = 500;
inline constexpr double kArrived = 50;

/// The one who orders in demonstrations.
const CustomerInfo& demoCustomer();

}  // namespace ovinta::cli
