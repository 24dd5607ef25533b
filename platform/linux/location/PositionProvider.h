#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Location.h"

namespace ovinta::platform::linuxos {

/// What a service of the system lets the application know of the position.
/// Where services, or clients of one, differ, the later in this list counts.
enum class PositionAccess {
  /// The device does not have the service.
  absent,
  /// The service is there, and has not answered yet.
  undecided,
  /// The user has switched location off for everybody.
  off,
  denied,
  /// The position may be followed while the user is aware of it.
  granted,
  grantedAlways
};

/// What hears of a stream. Called on the main thread, never inside a call of the provider's or the
/// stream's methods. Each may destroy the stream.
struct PositionHandlers {
  std::function<void(const Location&)> onLocation;
  /// Told of each answer, also of one that changes nothing.
  std::function<void(PositionAccess)> onAccess;
  /// Told of the service's version by a service that tells it unasked; may be empty.
  std::function<void(const std::string&)> onVersion = {};
};

/// Positions that keep coming until the object is destroyed. Whatever goes away and comes back
/// meanwhile (the service, the permission, somebody to ask for it) is found again by itself.
class PositionStream {
 public:
  virtual ~PositionStream() = default;

  /// How far the device must move, in metres, before the next position comes; zero or less for
  /// every position that there is.
  virtual void setDistanceFilter(double metres) = 0;
};

/// A service of the system that knows the position. Main thread only.
class PositionProvider {
 public:
  virtual ~PositionProvider() = default;

  /// Whether the system has the service at all, found out without starting it or asking the user.
  /// `handler` is called once, unless the provider is destroyed.
  virtual void findService(std::function<void(bool)> handler) = 0;

  /// Has `handler` called whenever the service comes that was not there before, until the token is
  /// destroyed, which `handler` may do. Null when only a stream notices.
  virtual std::shared_ptr<void> watchArrivals(const std::function<void()>& /*handler*/) {
    return nullptr;
  }

  /// Asks for the permission by beginning to follow the position.
  virtual std::unique_ptr<PositionStream> open(double distanceFilter,
                                               PositionHandlers handlers) = 0;
};

/// The smallest radius of uncertainty that is believed: services report zero for a good fix.
inline constexpr double kBestAccuracyMetres = 5;

}  // namespace ovinta::platform::linuxos
