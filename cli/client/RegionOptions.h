#pragma once

#include <CLI/CLI.hpp>

#include "platform/Region.h"

namespace ovinta::cli {

/// The options that make up a circle on the map.
inline void addRegionOptions(CLI::App& command, platform::CircularRegion& region) {
  command.add_option("--latitude", region.center.latitude, "Degrees")->required();
  command.add_option("--longitude", region.center.longitude, "Degrees")->required();
  command.add_option("--radius", region.radius, "Metres")->required();
}

}  // namespace ovinta::cli
