#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/Services.h"
#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/notifications/BusDaemon.h"
#include "platform/linux/notifications/NotificationTrigger.h"

namespace ovinta::platform::linux {

/// Fires the pending notifications of all registered applications that do not run. Only one agent
/// is at work in a session. Main thread only.
class NotifyAgent {
 public:
  /// `onEnd` is called once: when nothing is pending and nothing shown can be clicked any more,
  /// when another agent is at work, or when the bus is gone. It may not destroy the agent.
  NotifyAgent(const Services& services, std::shared_ptr<dbus::Bus> sessionBus,
              AgentRegistry registry, std::function<void()> onEnd);
  NotifyAgent(const NotifyAgent&) = delete;
  NotifyAgent& operator=(const NotifyAgent&) = delete;

 private:
  enum class State {
    working,
    /// The name is being given up.
    leaving,
    /// It is given up; whoever needs an agent from now on gets a new one started, so whatever
    /// became pending before is seen now.
    lastLook
  };
  /// One application.
  struct Client {
    std::shared_ptr<NotificationStoreQueue> store;
    std::shared_ptr<NotificationTrigger> trigger;
    /// Whether it was looked at since the last call of `review`.
    bool isReviewed = false;
  };

  void takeName();
  void review();
  void look(const std::set<std::string>& names);
  Client makeClient(const RegisteredApplication& application);
  void noteReviewed(const std::string& busName);
  void leaveWhenIdle();
  void activate(const std::string& applicationID);
  void end();

  const Services services_;
  const std::shared_ptr<dbus::Bus> bus_;
  const AgentRegistry registry_;
  std::function<void()> onEnd_;
  State state_ = State::working;
  /// By the application's name on the bus.
  std::map<std::string, Client> clients_;
  BusDaemon daemon_;
};

}  // namespace ovinta::platform::linux
