#pragma once

#include <filesystem>
#include <memory>

#include "platform/Clock.h"
#include "platform/Device.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/device/PowerSupplies.h"

namespace ovinta::platform::linuxos {

/// The battery as UPower knows it, or as the kernel's files say while UPower does not answer. It is
/// read behind the answer to each question for the state that finds no reading of the last ten
/// seconds; without one of the last minute the files answer. Otherwise it does nothing at all:
/// UPower, which tells of every change of the charge, is not followed. Destroyed on the main
/// thread.
class SystemDevice : public Device {
 public:
  SystemDevice(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<Clock> clock,
               std::filesystem::path powerSupplies = kPowerSupplies);

  void setBatteryMonitoringEnabled(bool enabled) override;
  BatteryState batteryState() const override;

 private:
  struct Reading;

  void read() const;

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<Clock> clock_;
  const std::filesystem::path powerSupplies_;
  const std::shared_ptr<Reading> reading_;
};

}  // namespace ovinta::platform::linuxos
