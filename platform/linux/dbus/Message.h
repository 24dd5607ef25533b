#pragma once

#include <chrono>
#include <limits>
#include <optional>
#include <string>

#include "platform/linux/dbus/Values.h"

namespace ovinta::platform::linuxos::dbus {

/// Errors that any call can end with, besides those of the service.
inline constexpr const char* kAccessDenied = "org.freedesktop.DBus.Error.AccessDenied";
inline constexpr const char* kServiceUnknown = "org.freedesktop.DBus.Error.ServiceUnknown";
inline constexpr const char* kUnknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";
inline constexpr const char* kUnknownInterface = "org.freedesktop.DBus.Error.UnknownInterface";
inline constexpr const char* kNoReply = "org.freedesktop.DBus.Error.NoReply";
inline constexpr const char* kDisconnected = "org.freedesktop.DBus.Error.Disconnected";

/// The bus itself, as a service of its own.
inline constexpr const char* kBusName = "org.freedesktop.DBus";
inline constexpr const char* kBusPath = "/org/freedesktop/DBus";

inline constexpr std::chrono::milliseconds kCallTimeout{5000};
/// The limit for a call that takes as long as the user does: an answer that comes after its limit
/// is lost, and with it whatever the service has given. A service that goes away ends the call in a
/// failure.
inline constexpr std::chrono::milliseconds kNoTimeout{std::numeric_limits<int>::max()};

struct MethodCall {
  std::string service;
  std::string object;
  std::string interface;
  std::string method;
  Variant arguments = {};
  std::chrono::milliseconds timeout = kCallTimeout;
  /// Whether a service that does not run is started for the call if the bus knows how.
  bool startsService = true;
};

struct Failure {
  /// The error's name, one of those above or the service's own.
  std::string name;
  std::string message;
};

struct Reply {
  /// The results; empty after a failure.
  Variant values = {};
  std::optional<Failure> failure = {};
};

/// Which signals are wanted; an empty text stands for any.
struct SignalMatch {
  std::string service = {};
  std::string object = {};
  std::string interface = {};
  std::string member = {};
  /// The first argument of the signal.
  std::string argument = {};
  /// Whether an argument that begins with this one and a dot will do too.
  bool isNamespace = false;
};

struct Signal {
  std::string object;
  std::string interface;
  std::string member;
  Variant arguments;
};

/// A name to watch on the bus.
struct NameMatch {
  std::string name;
  /// Whether the bus is to start the service, if it knows how, when the watch begins.
  bool activates = false;
  /// Whether somebody waits for the service. A bus that is not there is then looked for, and the
  /// log tells when the service is absent; a watch that is of use by chance alone costs nothing.
  bool isAwaited = true;
};

}  // namespace ovinta::platform::linuxos::dbus
