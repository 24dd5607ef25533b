#pragma once

#include <optional>

#include "platform/Location.h"
#include "platform/linux/dbus/Values.h"

namespace ovinta::platform::linuxos {

/// The position as GeoClue and the location portal write it; none when it makes no sense. The
/// accuracy is never below `kBestAccuracyMetres`.
std::optional<Location> readPosition(const dbus::Properties& properties);

}  // namespace ovinta::platform::linuxos
