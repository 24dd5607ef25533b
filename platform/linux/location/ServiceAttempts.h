#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// Decides when to ask a service for something that is wanted for long: at first, some time after a
/// failure that may pass, when the service comes, and at once when it leaves after it has served.
/// Main thread only.
class ServiceAttempts {
 public:
  /// Whom to ask, and how often.
  struct Options {
    /// The service's name on the bus.
    std::string service;
    /// The time from an attempt that failed to the next one.
    TimeInterval retryInterval;
  };

  /// Why an attempt has failed, or what it had got was taken away.
  enum class Reason {
    /// May pass by itself: there is another attempt after the interval.
    passing,
    /// Lasts until the service has left and come.
    lasting,
    /// The service is not there.
    absence
  };

  /// What an attempt consists of; called on the main thread.
  struct Handlers {
    /// Begins an attempt, which ends in `succeeded` or `failed`, not inside it.
    std::function<void()> begin;
    /// Lets go of what the service, which has left, had given.
    std::function<void()> forget;
    /// Ends the attempt under way in `failed`: the service has left meanwhile.
    std::function<void()> fail;
  };

  ServiceAttempts(std::shared_ptr<dbus::Bus> bus, std::shared_ptr<MainQueue> mainQueue,
                  Options options, Handlers handlers);
  ServiceAttempts(const ServiceAttempts&) = delete;
  ServiceAttempts& operator=(const ServiceAttempts&) = delete;

  void begin();
  void succeeded() { step_ = Step::served; }
  void failed(Reason reason);

  bool hasSucceeded() const { return step_ == Step::served; }

 private:
  enum class Step { waiting, underWay, served };

  void notePresence(bool isPresent);

  const std::shared_ptr<MainQueue> mainQueue_;
  const TimeInterval retryInterval_;
  const Handlers handlers_;
  Step step_ = Step::waiting;
  /// How many attempts have begun.
  int count_ = 0;
  bool isPresent_ = false;
  bool wasAbsent_ = false;
  dbus::Service service_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
