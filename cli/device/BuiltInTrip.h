#pragma once

#include <string_view>

#include "platform/Location.h"

namespace ovinta::cli {

/// The GPX text of the drive that is compiled in.
std::string_view builtInTrip();

/// The site to which the built-in drive leads.
inline constexpr platform::Coordinate kBuiltInTripEnd{40.7411, -73.9897};

}  // namespace ovinta::cli
