#include "platform/linux/notifications/AgentContact.h"

#include <utility>

namespace ovinta::platform::linuxos {
namespace {

/// How often an agent that has ended is started again: it may just have been ending when something
/// became pending, but one that fails again and again is let be.
constexpr int kMostRestarts = 3;

}  // namespace

AgentContact::AgentContact(std::shared_ptr<dbus::Bus> sessionBus, std::shared_ptr<Log> log,
                           const RegisteredApplication& application, bool wantsAgent)
    : bus_(std::move(sessionBus)),
      log_(std::move(log)),
      busName_(application.busName()),
      wantsAgent_(wantsAgent),
      daemon_(bus_) {}

void AgentContact::setArmed(bool isArmed) {
  const bool wasLetBe = std::exchange(restarts_, 0) > kMostRestarts;
  if (std::exchange(isArmed_, isArmed) == isArmed) {
    if (isArmed && wasLetBe) keepAgent();
    return;
  }
  agent_.reset();
  if (!isArmed) return daemon_.releaseName(busName_);
  // The agent, once there, must find the name; without a bus it asks again when there is one.
  daemon_.requestName(busName_, dbus::BusDaemon::IfTaken::wait, [this](bool) {
    if (isArmed_ && wantsAgent_) keepAgent();
  });
}

void AgentContact::keepAgent() {
  agent_.emplace(bus_, kAgentBusName);
  // The agent counts as there at first, because one that is just ending can neither be started nor
  // be found.
  agent_->onPresence(true, [this, wasThere = true](bool isThere) mutable {
    // A bus that was lost meanwhile has forgotten whose the name is.
    if (isThere) daemon_.requestName(busName_, dbus::BusDaemon::IfTaken::wait, [](bool) {});
    if (std::exchange(wasThere, isThere) && !isThere) restartAgent();
  });
}

void AgentContact::restartAgent() {
  if (++restarts_ <= kMostRestarts) return daemon_.start(kAgentBusName);
  log_->write(std::string(kAgentBusName) +
              " keeps ending; it may have another $XDG_DATA_HOME than this application");
}

}  // namespace ovinta::platform::linuxos
