#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/Device.h"
#include "platform/MainQueue.h"
#include "platform/linux/PowerSupplies.h"
#include "platform/linux/dbus/Bus.h"

namespace ovinta::platform::linux {

/// The battery as UPower knows it, followed only while monitoring is on; where there is no UPower,
/// what the kernel's files say at each question. Destroyed on the main thread.
class SystemDevice : public Device {
 public:
  SystemDevice(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
               std::filesystem::path powerSupplies = kPowerSupplies);

  void setBatteryMonitoringEnabled(bool enabled) override;
  BatteryState batteryState() const override;

 private:
  class Monitor;
  struct Shared {
    std::atomic<bool> isMonitored = false;
    /// Guards `state`.
    std::mutex mutex = {};
    /// What UPower said last; absent while there is none.
    std::optional<BatteryState> state = {};
    /// There while monitoring is on. Main thread only.
    std::shared_ptr<Monitor> monitor = {};

    void setState(std::optional<BatteryState> newState) {
      const std::lock_guard lock(mutex);
      state = newState;
    }
  };

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const std::filesystem::path powerSupplies_;
  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace ovinta::platform::linux
