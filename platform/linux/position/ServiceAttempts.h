#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linux {

/// When to ask a service for something that is wanted for long: at first, some time after a failure
/// that may pass, when the service comes, and at once when it leaves after it has served. Main
/// thread only.
class ServiceAttempts {
 public:
  struct Settings {
    std::string service;
    /// From an attempt that failed to the next one.
    TimeInterval retryInterval;
  };

  /// `begin` begins an attempt, which ends in `succeeded` or `failed`, not inside it; `forget` lets
  /// go of what the service, which has left, had given.
  ServiceAttempts(std::shared_ptr<dbus::Bus> bus, std::shared_ptr<MainQueue> mainQueue,
                  Settings settings, std::function<void()> begin, std::function<void()> forget);
  ServiceAttempts(const ServiceAttempts&) = delete;
  ServiceAttempts& operator=(const ServiceAttempts&) = delete;

  void begin();
  void succeeded() { step_ = Step::served; }
  /// Also when what was given is taken away. `retries`: whether to try again before the service has
  /// left and come.
  void failed(bool retries);
  /// The attempt has failed because the service is not there.
  void missed();

  bool hasSucceeded() const { return step_ == Step::served; }

 private:
  enum class Step { waiting, underWay, served };

  void notePresence(bool isPresent);

  const std::shared_ptr<MainQueue> mainQueue_;
  const TimeInterval retryInterval_;
  const std::function<void()> begin_;
  const std::function<void()> forget_;
  Step step_ = Step::waiting;
  bool isPresent_ = false;
  bool wasAbsent_ = false;
  dbus::Service service_;
  /// Expires with the object.
  const std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ovinta::platform::linux
