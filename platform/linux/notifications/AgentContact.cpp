#include "platform/linux/notifications/AgentContact.h"

#include <utility>

namespace ovinta::platform::linux {
namespace {

/// An agent may just be ending when something becomes pending. One that fails is let be.
constexpr int kMostRestarts = 3;

}  // namespace

AgentContact::AgentContact(std::shared_ptr<dbus::Bus> sessionBus,
                           const RegisteredApplication& application, bool wantsAgent)
    : bus_(std::move(sessionBus)),
      busName_(application.busName()),
      wantsAgent_(wantsAgent),
      daemon_(bus_) {}

void AgentContact::setArmed(bool isArmed) {
  if (std::exchange(isArmed_, isArmed) == isArmed) return;
  agent_.reset();
  if (!isArmed) return daemon_.releaseName(busName_);
  restarts_ = 0;
  // The agent, once there, must find the name.
  daemon_.requestName(busName_, BusDaemon::IfTaken::wait, [this](bool) {
    if (isArmed_ && wantsAgent_) keepAgent();
  });
}

void AgentContact::keepAgent() {
  agent_.emplace(bus_, kAgentBusName);
  agent_->onPresence(true, [this, wasThere = false](bool isThere) mutable {
    // A bus that was lost meanwhile has forgotten whose the name is.
    if (isThere) daemon_.requestName(busName_, BusDaemon::IfTaken::wait, [](bool) {});
    if (std::exchange(wasThere, isThere) && !isThere && restarts_++ < kMostRestarts) {
      daemon_.start(kAgentBusName);
    }
  });
}

}  // namespace ovinta::platform::linux
