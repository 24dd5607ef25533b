#include "OvintaSDK/location/Averager.h"

#include <algorithm>
#include <limits>

#include "platform/FatalError.h"

namespace ovinta {

void Averager::add(float sample) {
  // The bound is fixed; maxCount does not take part.
  constexpr std::int64_t kMaxWeight = 9;
  const auto weight = static_cast<float>(std::min(count, kMaxWeight));
  value = (value * weight + sample) / (weight + 1.0F);
  if (count == std::numeric_limits<std::int64_t>::max()) {
    platform::fatalError("arithmetic overflow");
  }
  ++count;
}

}  // namespace ovinta
