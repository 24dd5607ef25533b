#pragma once

#include "platform/Device.h"
#include "platform/linux/dbus/Values.h"

namespace ovinta::platform::linuxos {

inline constexpr const char* kUPowerName = "org.freedesktop.UPower";
inline constexpr const char* kUPowerPath = "/org/freedesktop/UPower";
/// The object of UPower that stands for all batteries of the device in one.
inline constexpr const char* kUPowerDisplayDevice = "/org/freedesktop/UPower/devices/DisplayDevice";
inline constexpr const char* kUPowerDevice = "org.freedesktop.UPower.Device";

/// What the display device's properties say; unknown when there is no battery.
BatteryState readUPower(const dbus::Properties& properties);

}  // namespace ovinta::platform::linuxos
