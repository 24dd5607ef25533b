#pragma once

#include <memory>
#include <string>

#include "platform/Log.h"
#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/notifications/BusDaemon.h"

namespace ovinta::platform::linux {

/// Lets the agent know that the application runs and has something pending, and has it started then
/// so that it is there when the application ends. Main thread only.
class AgentContact {
 public:
  AgentContact(std::shared_ptr<dbus::Bus> sessionBus, std::shared_ptr<Log> log,
               const RegisteredApplication& application)
      : log_(std::move(log)), busName_(application.busName()), daemon_(std::move(sessionBus)) {}

  /// A missing agent is logged once. Nothing is asked of the bus before the first that is pending.
  void setArmed(bool isArmed);

 private:
  const std::shared_ptr<Log> log_;
  const std::string busName_;
  bool isArmed_ = false;
  bool hasLoggedAbsence_ = false;
  BusDaemon daemon_;
};

}  // namespace ovinta::platform::linux
