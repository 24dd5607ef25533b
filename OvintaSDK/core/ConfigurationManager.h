#pragma once

#include <functional>
#include <optional>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/Export.h"
#include "platform/Value.h"

namespace ovinta {

/// Receives the configuration, absent when the service has none, or the error.
using ConfigurationCallback = std::function<void(std::optional<platform::Dictionary>, ErrorPtr)>;

/// Asks the service for the app's configuration; reached as `Ovinta::config()`. Keeps nothing.
class OVINTA_EXPORT ConfigurationManager {
 public:
  ConfigurationManager() = default;
  ConfigurationManager(const ConfigurationManager&) = delete;
  ConfigurationManager& operator=(const ConfigurationManager&) = delete;

  /// Asks for the configuration, whatever the service keeps under "data". May be called from any
  /// thread and returns at once; the callback is called once, on the network's callback thread, and
  /// never when no base URL is known.
  void fetch(ConfigurationCallback callback = {});
};

}  // namespace ovinta
