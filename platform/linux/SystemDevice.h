#pragma once

#include <filesystem>
#include <memory>

#include "platform/Device.h"
#include "platform/MainQueue.h"
#include "platform/linux/PowerSupplies.h"
#include "platform/linux/dbus/Bus.h"

namespace ovinta::platform::linux {

/// The battery as UPower knows it. UPower, which tells of every change of the charge, is followed
/// only from a question for the state on until nobody has asked for some minutes. The first answer,
/// and all where there is no UPower, is what the kernel's files say. Destroyed on the main thread.
class SystemDevice : public Device {
 public:
  SystemDevice(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
               std::filesystem::path powerSupplies = kPowerSupplies);

  void setBatteryMonitoringEnabled(bool enabled) override;
  BatteryState batteryState() const override;

 private:
  class Follower;

  const std::filesystem::path powerSupplies_;
  const std::shared_ptr<Follower> follower_;
};

}  // namespace ovinta::platform::linux
