#pragma once

#include <map>

#include "platform/linux/dbus/Message.h"

namespace ovinta::platform::linuxos {

inline constexpr const char* kBlueZName = "org.bluez";
inline constexpr const char* kBlueZAdapter = "org.bluez.Adapter1";
inline constexpr const char* kBlueZDevice = "org.bluez.Device1";

/// The object of BlueZ that tells of all others.
inline constexpr const char* kBlueZRoot = "/";
inline constexpr const char* kObjectManager = "org.freedesktop.DBus.ObjectManager";
inline constexpr const char* kGetObjects = "GetManagedObjects";

/// An object's properties by interface.
using BlueZInterfaces = std::map<std::string, dbus::Properties>;
using BlueZObjects = std::map<dbus::ObjectPath, BlueZInterfaces>;

/// BlueZ's objects by their paths, read out of the answer to `kGetObjects`; none after a failure.
inline BlueZObjects readBlueZObjects(const dbus::Reply& reply) {
  return dbus::read<BlueZObjects>(reply.values, 0).value_or(BlueZObjects());
}

}  // namespace ovinta::platform::linuxos
