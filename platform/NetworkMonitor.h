#pragma once

#include <functional>

namespace ovinta::platform {

/// Knows whether the device has a network. That is a hint: a network may be there that does not
/// lead to the service, and a service on the device itself needs none.
class NetworkMonitor {
 public:
  /// Receives whether there is a network. The same may be told again: a network that follows upon
  /// another is as good an occasion to try as the first one. Must not throw.
  using Handler = std::function<void(bool isAvailable)>;

  virtual ~NetworkMonitor() = default;

  /// Calls `handler` on the main queue: soon with how things stand, and at each change, until the
  /// monitor is destroyed. Before the call the monitor does nothing at all. Call it once; may be
  /// called from any thread, and returns at once.
  virtual void start(Handler handler) = 0;
};

}  // namespace ovinta::platform
