#include "platform/linux/SystemDevice.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/linux/PowerSupplies.h"
#include "platform/linux/UPower.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linux {
namespace {

/// How long it is followed after a question.
constexpr TimeInterval kPatience = std::chrono::minutes(2);

}  // namespace

/// What UPower says, while somebody wants to know it. May be used from any thread, save the private
/// methods, which belong to the main thread.
class SystemDevice::Follower : public std::enable_shared_from_this<Follower> {
 public:
  Follower(std::shared_ptr<dbus::Bus> bus, std::shared_ptr<MainQueue> mainQueue)
      : bus_(std::move(bus)), mainQueue_(std::move(mainQueue)) {}

  bool isMonitored() const { return isMonitored_; }
  void setMonitored(bool isMonitored) {
    isMonitored_ = isMonitored;
    if (!isMonitored) later({}, [this] { rest(); });
  }

  /// What UPower said last; absent when it is not followed yet, or not there.
  std::optional<BatteryState> ask() {
    isAsked_ = true;
    if (!isFollowing_.exchange(true)) later({}, [this] { follow(); });
    const std::lock_guard lock(mutex_);
    return state_;
  }

 private:
  void follow() {
    service_ = std::make_shared<dbus::Service>(bus_, kUPowerName);
    service_->onPropertiesChanged(
        kUPowerDisplayDevice, kUPowerDevice,
        [this](const std::string&, const dbus::Properties& changed) { merge(changed); });
    service_->onPresence(true, [this](bool isPresent) {
      known_.clear();
      publish(std::nullopt);
      if (!isPresent) return;
      service_->getProperties(kUPowerDisplayDevice, kUPowerDevice,
                              [this](const dbus::Properties& all) { merge(all); });
    });
    restUnlessAsked();
  }

  void restUnlessAsked() {
    if (!isMonitored_ || !isAsked_.exchange(false)) return rest();
    later(kPatience, [this, followed = std::weak_ptr(service_)] {
      if (!followed.expired()) restUnlessAsked();
    });
  }

  void rest() {
    service_ = nullptr;
    known_.clear();
    publish(std::nullopt);
    isFollowing_ = false;
  }

  void merge(dbus::Properties changed) {
    changed.merge(std::exchange(known_, {}));
    known_ = std::move(changed);
    publish(readUPower(known_));
  }

  void publish(std::optional<BatteryState> state) {
    const std::lock_guard lock(mutex_);
    state_ = state;
  }

  template <class Step>
  void later(TimeInterval delay, Step step) {
    mainQueue_->asyncAfter(delay, [weak = weak_from_this(), step] {
      if (const auto self = weak.lock()) step();
    });
  }

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  std::atomic<bool> isMonitored_ = false;
  std::atomic<bool> isFollowing_ = false;
  /// Since `restUnlessAsked` looked last.
  std::atomic<bool> isAsked_ = false;
  /// Guards `state_`.
  std::mutex mutex_;
  std::optional<BatteryState> state_;
  /// There while UPower is followed.
  std::shared_ptr<dbus::Service> service_;
  dbus::Properties known_;
};

SystemDevice::SystemDevice(std::shared_ptr<dbus::Bus> systemBus,
                           std::shared_ptr<MainQueue> mainQueue,
                           std::filesystem::path powerSupplies)
    : powerSupplies_(std::move(powerSupplies)),
      follower_(std::make_shared<Follower>(std::move(systemBus), std::move(mainQueue))) {}

void SystemDevice::setBatteryMonitoringEnabled(bool enabled) { follower_->setMonitored(enabled); }

BatteryState SystemDevice::batteryState() const {
  if (!follower_->isMonitored()) return BatteryState::unknown;
  const auto state = follower_->ask();
  return state ? *state : readPowerSupplies(powerSupplies_);
}

}  // namespace ovinta::platform::linux
