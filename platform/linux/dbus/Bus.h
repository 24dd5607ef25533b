#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/linux/dbus/BusLink.h"
#include "platform/linux/dbus/ContextThread.h"
#include "platform/linux/dbus/Message.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos::dbus {

/// The address of the system's bus, as the environment says or else the usual one.
std::string systemBusAddress();
/// The address of the bus of the user's session, as the environment says or else the usual one.
std::string sessionBusAddress();

/// One bus of the machine. Connects when it is first used, on a thread of its own, so that nothing
/// here ever blocks; without a bus, calls fail and services are absent, which is logged once. A bus
/// that is gone is looked for while somebody waits for a service or a signal. Otherwise, while
/// nothing is called and nothing signalled, it does nothing at all. May be used from any thread,
/// and is destroyed on the main thread; handlers run on the main queue. Most users want a
/// `Service`.
class Bus {
 public:
  Bus(std::string address, std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Log> log);

  /// Drops the calls under way without an answer. At the process's exit, when nobody destroys the
  /// bus, its thread comes to rest just so.
  ~Bus();

  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// Calls `completion` once, at the latest after the call's time limit. It must not own the bus.
  /// Starts the service if the bus knows how.
  void call(MethodCall call, std::function<void(Reply)> completion);

  /// Has the log told what ails a service, once for each service.
  void log(std::string service, std::string line);

  /// Keeps a handler registered until it is destroyed, on the main thread and before the bus.
  class Registration;

  [[nodiscard]] std::unique_ptr<Registration> subscribe(SignalMatch match,
                                                        std::function<void(const Signal&)> handler);

  /// Calls `handler` soon with whether the service is there, and at each change.
  [[nodiscard]] std::unique_ptr<Registration> watch(NameMatch match,
                                                    std::function<void(bool)> handler);

 private:
  const std::shared_ptr<MainQueue> mainQueue_;
  const portable::Lifetime lifetime_;
  /// The link is used on the bus's thread alone.
  BusLink link_;
  ContextThread thread_;
};

class Bus::Registration {
 public:
  Registration(Bus& bus, std::shared_ptr<void> handler) : bus_(bus), handler_(std::move(handler)) {}
  ~Registration();
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

 private:
  Bus& bus_;
  /// The handler's function. What waits in the main queue holds it weakly, and its address is the
  /// key of the link's registration.
  const std::shared_ptr<void> handler_;
};

}  // namespace ovinta::platform::linuxos::dbus
