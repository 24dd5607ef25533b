#pragma once

#include "cli/client/NumberOptions.h"
#include "platform/Region.h"

namespace ovinta::cli {

/// Adds the options that make up a circle on the map, all of them required.
inline void addRegionOptions(CLI::App& command, platform::CircularRegion& region) {
  addNumber(command, "--latitude", region.center.latitude, "Degrees")->required();
  addNumber(command, "--longitude", region.center.longitude, "Degrees")->required();
  addNumber(command, "--radius", region.radius, "Metres")->required();
}

}  // namespace ovinta::cli
