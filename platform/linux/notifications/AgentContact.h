#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/notifications/BusDaemon.h"

namespace ovinta::platform::linux {

/// Lets the agent know that the application runs and has something pending, and sees to it that the
/// agent is there by then, in case the application ends and wants it. Main thread only.
class AgentContact {
 public:
  AgentContact(std::shared_ptr<dbus::Bus> sessionBus, const RegisteredApplication& application,
               bool wantsAgent);

  /// Nothing is asked of the bus before something is pending. A missing agent is logged once.
  void setArmed(bool isArmed);

 private:
  void keepAgent();

  const std::shared_ptr<dbus::Bus> bus_;
  const std::string busName_;
  const bool wantsAgent_;
  bool isArmed_ = false;
  int restarts_ = 0;
  BusDaemon daemon_;
  /// There while something is pending.
  std::optional<dbus::Service> agent_;
};

}  // namespace ovinta::platform::linux
