#pragma once

#include <cstdint>
#include <string_view>

#include "../../Value.h"

namespace ovinta::platform::simulation {

// Records as the service sends them, with what it always sends; `fields` adds to that or replaces
// it, by the names on the wire. Functions for any thread.

/// The token of `sampleCustomer`.
inline constexpr std::string_view kSampleToken = "customer-token";

/// A customer named Alex, with all of a vehicle.
Dictionary sampleCustomer(Dictionary fields = {});

/// An open order at site 42, which customer and store have yet to begin with.
Dictionary sampleOrder(std::int64_t id, Dictionary fields = {});

/// A site without details; "geofence" takes `sampleGeofence`.
Dictionary sampleSite(std::int64_t id, Dictionary fields = {});

/// A circle round a place, its radius in metres.
Dictionary sampleGeofence(double latitude, double longitude, double radius);

}  // namespace ovinta::platform::simulation
