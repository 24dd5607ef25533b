#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/client/ObservedURLSession.h"
#include "cli/device/ObservedLocationServices.h"
#include "platform/Date.h"
#include "platform/Device.h"

namespace ovinta::cli {

/// What the library does on this device, at some moment.
struct LiveState {
  platform::Date now;
  /// Whether there is a location service that is switched on.
  bool isEnabled = false;
  platform::AuthorizationStatus permission = platform::kAuthorizationNotDetermined;
  ObservedLocation location = {};
  /// Metres to the nearest site of an open order; absent where that is not known.
  std::optional<double> distance = {};
  platform::BatteryState battery = platform::BatteryState::unknown;
  /// How many requests were answered, by kind.
  std::map<std::string, std::int64_t> sent = {};
  std::optional<Exchange> lastSent = {};
};

/// The permission in a few words.
std::string permissionText(bool isEnabled, platform::AuthorizationStatus permission);

/// The state as lines for people.
std::vector<std::string> liveLines(const LiveState& state);

}  // namespace ovinta::cli
