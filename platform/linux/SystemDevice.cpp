#include "platform/linux/SystemDevice.h"

#include <utility>

#include "platform/linux/UPower.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linux {

/// Follows UPower for as long as it lives. Main thread only.
class SystemDevice::Monitor {
 public:
  Monitor(std::shared_ptr<dbus::Bus> bus, std::weak_ptr<Shared> shared)
      : shared_(std::move(shared)), service_(std::move(bus), kUPowerName) {
    service_.onPropertiesChanged(
        kUPowerDisplayDevice, kUPowerDevice,
        [this](const std::string&, const dbus::Properties& changed) { merge(changed); });
    service_.onPresence(true, [this](bool isPresent) {
      known_.clear();
      publish(std::nullopt);
      if (!isPresent) return;
      service_.getProperties(kUPowerDisplayDevice, kUPowerDevice,
                             [this](const dbus::Properties& all) { merge(all); });
    });
  }

 private:
  void merge(dbus::Properties changed) {
    changed.merge(std::exchange(known_, {}));
    known_ = std::move(changed);
    publish(readUPower(known_));
  }

  void publish(std::optional<BatteryState> state) {
    if (const auto shared = shared_.lock()) shared->setState(state);
  }

  const std::weak_ptr<Shared> shared_;
  dbus::Properties known_;
  dbus::Service service_;
};

SystemDevice::SystemDevice(std::shared_ptr<dbus::Bus> systemBus,
                           std::shared_ptr<MainQueue> mainQueue,
                           std::filesystem::path powerSupplies)
    : bus_(std::move(systemBus)),
      mainQueue_(std::move(mainQueue)),
      powerSupplies_(std::move(powerSupplies)) {}

void SystemDevice::setBatteryMonitoringEnabled(bool enabled) {
  if (shared_->isMonitored.exchange(enabled) == enabled) return;
  mainQueue_->async([bus = bus_, weak = std::weak_ptr(shared_)] {
    const auto shared = weak.lock();
    if (!shared) return;
    shared->monitor = nullptr;
    shared->setState(std::nullopt);
    if (shared->isMonitored) shared->monitor = std::make_shared<Monitor>(bus, shared);
  });
}

BatteryState SystemDevice::batteryState() const {
  if (!shared_->isMonitored) return BatteryState::unknown;
  const auto state = [this] {
    const std::lock_guard lock(shared_->mutex);
    return shared_->state;
  }();
  return state ? *state : readPowerSupplies(powerSupplies_);
}

}  // namespace ovinta::platform::linux
