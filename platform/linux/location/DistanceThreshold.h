#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ovinta::platform::linuxos {

/// The distance filter as services take it: in whole metres, zero for every position.
inline std::uint32_t distanceThreshold(double metres) {
  if (!(metres > 0)) return 0;
  return static_cast<std::uint32_t>(
      std::min<double>(metres, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace ovinta::platform::linuxos
