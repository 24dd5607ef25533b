#include "platform/linux/device/SystemDevice.h"

#include <mutex>
#include <optional>
#include <utility>

#include "platform/linux/dbus/Service.h"
#include "platform/linux/device/PowerSupplies.h"
#include "platform/linux/device/UPower.h"

namespace ovinta::platform::linuxos {
namespace {

/// The age from which on a reading is replaced, and the age from which on it is no answer any more.
constexpr TimeInterval kFreshness = std::chrono::seconds(10);
constexpr TimeInterval kValidity = std::chrono::minutes(1);

}  // namespace

/// The last reading of the battery. May be used from any thread.
struct SystemDevice::Reading {
  /// Guards all other members.
  std::mutex mutex;
  bool isMonitored = false;
  bool isUnderWay = false;
  /// What was read; none before the first answer.
  std::optional<BatteryState> state;
  /// When the state was asked for: what changed later may not be in it.
  Date time;

  bool isWithin(TimeInterval age, Date now) const {
    return state && std::chrono::abs(now - time) <= age;
  }

  /// Whether the caller is to read anew, because the reading is old and nobody is reading yet. The
  /// caller is then the one who does.
  bool needsAnother(Date now) {
    return isMonitored && !isWithin(kFreshness, now) && !std::exchange(isUnderWay, true);
  }

  void end(BatteryState newState, Date asked) {
    const std::lock_guard lock(mutex);
    isUnderWay = false;
    state = newState;
    time = asked;
  }
};

SystemDevice::SystemDevice(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<Clock> clock,
                           std::filesystem::path powerSupplies)
    : bus_(std::move(systemBus)),
      clock_(std::move(clock)),
      powerSupplies_(std::move(powerSupplies)),
      reading_(std::make_shared<Reading>()) {}

void SystemDevice::setBatteryMonitoringEnabled(bool enabled) {
  const std::lock_guard lock(reading_->mutex);
  if (std::exchange(reading_->isMonitored, enabled) != enabled) reading_->state.reset();
}

BatteryState SystemDevice::batteryState() const {
  std::unique_lock lock(reading_->mutex);
  if (!reading_->isMonitored) return BatteryState::unknown;
  const Date now = clock_->now();
  const auto state = reading_->isWithin(kValidity, now) ? reading_->state : std::nullopt;
  const bool reads = reading_->needsAnother(now);
  lock.unlock();
  if (reads) read();
  return state ? *state : readPowerSupplies(powerSupplies_);
}

void SystemDevice::read() const {
  bus_->call(dbus::propertiesCall(kUPowerName, kUPowerDisplayDevice, kUPowerDevice),
             [asked = clock_->now(), files = powerSupplies_,
              weak = std::weak_ptr(reading_)](const dbus::Reply& reply) {
               const auto reading = weak.lock();
               if (!reading) return;
               const auto device = dbus::read<dbus::Properties>(reply.values, 0);
               const bool isAnswer = device && device->contains("State");
               reading->end(isAnswer ? readUPower(*device) : readPowerSupplies(files), asked);
             });
}

}  // namespace ovinta::platform::linuxos
