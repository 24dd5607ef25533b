#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/Services.h"
#include "platform/linux/dbus/BusDaemon.h"
#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/notifications/NotificationTrigger.h"

namespace ovinta::platform::linuxos {

/// Fires the pending notifications of all registered applications that do not run. Only one agent
/// is at work in a session. Main thread only.
class NotifyAgent {
 public:
  /// Makes the location services with the position that the application may have.
  using Location = std::function<std::shared_ptr<LocationServices>(const RegisteredApplication&)>;

  /// `onEnd` is called once: when nothing is pending and nothing shown can be clicked any more,
  /// when another agent is at work, or when the bus is gone. It may not destroy the agent.
  NotifyAgent(const Services& services, Location location, std::shared_ptr<dbus::Bus> sessionBus,
              AgentRegistry registry, std::function<void()> onEnd);
  NotifyAgent(const NotifyAgent&) = delete;
  NotifyAgent& operator=(const NotifyAgent&) = delete;

 private:
  /// An application that is served.
  struct Client {
    std::shared_ptr<NotificationStoreQueue> store;
    std::shared_ptr<NotificationTrigger> trigger;
    /// The application itself, to be started.
    std::shared_ptr<dbus::Service> application;
    RegisteredApplication registration;
    /// Whether it was looked at since the last call of `review`.
    bool isReviewed = false;
    /// How many clicks are being passed on to the application.
    std::size_t clicks = 0;

    /// Whether something is shown, may still be clicked or is being passed on.
    bool isBusy() const { return clicks > 0 || trigger->isShowing(); }
  };

  void review();
  void look(const std::set<std::string>& names);
  void dismissAllBut(const std::map<std::string, RegisteredApplication>& registrations);
  void addClient(const std::string& busName, const RegisteredApplication& application);
  void passOn(const Dictionary& userInfo, Client& client);
  void activate(Client& client);
  void endWhenIdle();
  void end();

  const Services services_;
  const Location location_;
  const std::shared_ptr<dbus::Bus> bus_;
  const AgentRegistry registry_;
  std::function<void()> onEnd_;
  /// The applications that are served, by their names on the bus.
  std::map<std::string, Client> clients_;
  /// Applications whose registration has gone or changed: each stays until it is idle.
  std::multimap<std::string, Client> dismissed_;
  dbus::BusDaemon daemon_;
};

}  // namespace ovinta::platform::linuxos
