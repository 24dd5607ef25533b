#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "../../../platform/Export.h"
#include "../../../platform/Value.h"
#include "OvintaSDK/api/OvintaError.h"

namespace ovinta {

class Context;

/// Receives the configuration, absent when the service has none, or the error.
using ConfigurationCallback = std::function<void(std::optional<platform::Dictionary>, ErrorPtr)>;

/// Asks the service for the app's configuration; reached as `Ovinta::config()`. Keeps nothing.
class OVINTA_EXPORT ConfigurationManager {
 public:
  ConfigurationManager();
  /// For the library's own use.
  explicit ConfigurationManager(std::shared_ptr<Context> context);
  ~ConfigurationManager();
  ConfigurationManager(const ConfigurationManager&) = delete;
  ConfigurationManager& operator=(const ConfigurationManager&) = delete;

  /// Asks for the configuration, whatever the service keeps under "data". May be called from any
  /// thread and returns at once; the callback is called at most once: on the network's callback
  /// thread when the service was asked, on a thread of the API queue when the base URL is none. It
  /// is left out when no base URL is known, and where the application's own `platform::URLSession`
  /// completes a success without data; that of Linux gives every complete answer its data.
  void fetch(ConfigurationCallback callback = {});

 private:
  const std::shared_ptr<Context> context_;
};

}  // namespace ovinta
