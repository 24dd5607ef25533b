#include "platform/linux/device/UPower.h"

#include <array>
#include <cstdint>

namespace ovinta::platform::linuxos {
namespace {

/// What UPower's numbers stand for: unknown, charging, discharging, empty, full, waiting to be
/// charged (which is plugged in), waiting to be discharged.
constexpr std::array kStates{
    BatteryState::unknown, BatteryState::charging, BatteryState::unplugged, BatteryState::unplugged,
    BatteryState::full,    BatteryState::charging, BatteryState::unplugged};

}  // namespace

BatteryState readUPower(const dbus::Properties& properties) {
  const auto number = dbus::read<std::uint32_t>(properties, "State").value_or(0);
  const bool isPresent = dbus::read<bool>(properties, "IsPresent").value_or(false);
  return isPresent && number < kStates.size() ? kStates[number] : BatteryState::unknown;
}

}  // namespace ovinta::platform::linuxos
