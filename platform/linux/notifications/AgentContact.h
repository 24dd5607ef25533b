#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/dbus/BusDaemon.h"
#include "platform/linux/notifications/AgentRegistry.h"

namespace ovinta::platform::linuxos {

/// Lets the agent know that the application runs and has something pending, and sees to it that the
/// agent is there by then, in case the application ends and wants it. Main thread only.
class AgentContact {
 public:
  AgentContact(std::shared_ptr<dbus::Bus> sessionBus, std::shared_ptr<Log> log,
               const RegisteredApplication& application, bool wantsAgent);

  /// Tells whether something is pending; to be called after each review. Nothing is asked of the
  /// bus before something is pending. A missing agent is logged once.
  void setArmed(bool isArmed);

 private:
  void keepAgent();
  void restartAgent();

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<Log> log_;
  const std::string busName_;
  const bool wantsAgent_;
  bool isArmed_ = false;
  /// How often the agent was started again since the last review.
  int restarts_ = 0;
  dbus::BusDaemon daemon_;
  /// The agent's service; none while nothing is pending.
  std::optional<dbus::Service> agent_;
};

}  // namespace ovinta::platform::linuxos
