#include "platform/linux/notifications/AgentContact.h"

#include <utility>

namespace ovinta::platform::linux {

void AgentContact::setArmed(bool isArmed) {
  if (std::exchange(isArmed_, isArmed) == isArmed) return;
  if (!isArmed) return daemon_.releaseName(busName_);
  // In this order: an agent that is about to end looks once more after it has given up its name.
  daemon_.requestName(busName_, BusDaemon::IfTaken::wait, [this](bool) {
    daemon_.start(kAgentBusName, [this](bool isThere) {
      if (isThere || std::exchange(hasLoggedAbsence_, true)) return;
      log_->write("No ovinta-notify-agent: notifications fire only while the application runs");
    });
  });
}

}  // namespace ovinta::platform::linux
