#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// Keeps one adapter of BlueZ looking for beacons whenever it is powered, also when somebody else
/// has ended that. Main thread only.
class BlueZDiscovery {
 public:
  struct Options {
    std::string adapter;
    /// The time from a call that failed, or a discovery that somebody has ended, to the next
    /// attempt.
    TimeInterval retryInterval;
    /// Told of each refusal that is not a mere matter of time.
    std::function<void(const dbus::Failure&)> onRefusal;
  };

  BlueZDiscovery(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
                 Options options);

  /// Has the adapter rest; the destruction is to follow. An adapter that is gone is not asked.
  void stop();

 private:
  enum class Step { idle, starting, running, waiting };

  void ask();
  void note(const dbus::Properties& changed);
  void start();
  void startFiltered();
  void noteStarted(const dbus::Reply& reply);
  void retryLater();
  void retry();
  /// Has the main queue run `step` after the interval, unless the object is gone by then.
  void later(void (BlueZDiscovery::*step)());

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const Options options_;
  Step step_ = Step::idle;
  /// Whether the adapter is powered and whether it discovers, as it last said.
  bool isPowered_ = false;
  bool isDiscovering_ = false;
  dbus::Service service_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
