#include "platform/linux/SystemDevice.h"

#include <array>
#include <cstdint>
#include <utility>

#include "platform/linux/PowerSupplies.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linux {
namespace {

constexpr const char* kService = "org.freedesktop.UPower";
/// All batteries of the device in one.
constexpr const char* kPath = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* kInterface = "org.freedesktop.UPower.Device";

/// By UPower's number: unknown, charging, discharging, empty, full, waiting to be charged (which is
/// plugged in), waiting to be discharged.
constexpr std::array kStates{
    BatteryState::unknown, BatteryState::charging, BatteryState::unplugged, BatteryState::unplugged,
    BatteryState::full,    BatteryState::charging, BatteryState::unplugged};

BatteryState stateIn(const dbus::Properties& properties) {
  const auto number = dbus::read<std::uint32_t>(properties, "State").value_or(0);
  const bool isPresent = dbus::read<bool>(properties, "IsPresent").value_or(false);
  return isPresent && number < kStates.size() ? kStates[number] : BatteryState::unknown;
}

}  // namespace

/// Follows UPower for as long as it lives. Main thread only.
class SystemDevice::Monitor {
 public:
  Monitor(std::shared_ptr<dbus::Bus> bus, std::weak_ptr<Shared> shared)
      : shared_(std::move(shared)), service_(std::move(bus), kService) {
    service_.onPropertiesChanged(
        kPath, kInterface,
        [this](const std::string&, const dbus::Properties& changed) { merge(changed); });
    service_.onPresence(true, [this](bool isPresent) {
      known_.clear();
      publish(std::nullopt);
      if (!isPresent) return;
      service_.getProperties(kPath, kInterface,
                             [this](const dbus::Properties& all) { merge(all); });
    });
  }

 private:
  void merge(dbus::Properties changed) {
    changed.merge(std::exchange(known_, {}));
    known_ = std::move(changed);
    publish(stateIn(known_));
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
