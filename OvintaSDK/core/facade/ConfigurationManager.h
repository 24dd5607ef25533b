#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "../../../platform/Export.h"
#include "../../../platform/Value.h"
#include "OvintaSDK/api/OvintaError.h"

namespace ovinta {

class Context;
class Library;

/// Receives the configuration, absent when the service has none, or the error: a null error is a
/// success.
using ConfigurationCallback = std::function<void(std::optional<platform::Dictionary>, ErrorPtr)>;

/// Asks the service for the app's configuration; reached as `Ovinta::config()`. Keeps nothing. May
/// be used from any thread, and destroyed while requests are under way.
class OVINTA_EXPORT ConfigurationManager {
 public:
  /// One of the application's own, which does the same as `Ovinta::config()`.
  ConfigurationManager();
  ~ConfigurationManager();
  ConfigurationManager(const ConfigurationManager&) = delete;
  ConfigurationManager& operator=(const ConfigurationManager&) = delete;

  /// Asks for the configuration, whatever the service keeps under "data". Returns at once; the
  /// callback, which may be empty and must not throw, is called at most once: on the callback
  /// thread of the URL session when the service was asked, on a thread of the API queue when the
  /// stored base URL is no URL. It is left out when no base URL is stored, and where the
  /// application's own `platform::URLSession` completes a success without data; that of Linux gives
  /// every complete answer its data. Errors: those of a request (see `OvintaError`).
  void fetch(ConfigurationCallback callback = {});

 private:
  friend class Library;
  explicit ConfigurationManager(std::shared_ptr<Context> context) : context_(std::move(context)) {}

  const std::shared_ptr<Context> context_;
};

}  // namespace ovinta
