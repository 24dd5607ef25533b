#pragma once

#include "OvintaSDK/model/OrderEvent.h"
#include "platform/Location.h"

namespace ovinta {

/// The event that tells where the customer is, made by whoever follows the device. May be called
/// from any thread.
OrderEvent locationUpdateEvent(std::int64_t orderID, const platform::Location& location,
                               std::optional<std::vector<Beacon>> beacons, EtaSeconds etaSeconds);

}  // namespace ovinta
