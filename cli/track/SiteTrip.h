#pragma once

#include <optional>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/simulation/trip/Trip.h"

namespace ovinta::cli {

/// The drive that is built in, moved so that it leads to the order's site and its beacons are the
/// site's; none where the order names none. Absent where the order does not say where its site is,
/// or the site is so near to a pole that there is no such way.
std::optional<platform::simulation::Trip> tripToSite(const Order& order);

}  // namespace ovinta::cli
