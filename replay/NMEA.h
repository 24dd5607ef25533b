#pragma once

#include <string>

#include "platform/Location.h"

namespace ovinta::replay {

/// What a receiver of satellites says, once a second, in the sentences of NMEA 0183: GGA with the
/// dilution of precision, 5 m of accuracy for each unit, and RMC with the speed, each with its end
/// of line. A location that is not valid is told as a position not fixed.
std::string nmea(const platform::Location& location);

}  // namespace ovinta::replay
