#pragma once

#include <cstdint>
#include <optional>

#include "platform/Location.h"
#include "platform/linux/dbus/Values.h"

namespace ovinta::platform::linuxos {

/// The position as GeoClue and the location portal write it; none when it makes no sense. The
/// accuracy is never below `kBestAccuracyMetres`.
std::optional<Location> readPosition(const dbus::Properties& properties);

/// The distance filter as GeoClue and the location portal take it: in whole metres, zero for every
/// position.
std::uint32_t distanceThreshold(double metres);

}  // namespace ovinta::platform::linuxos
