#include "platform/linux/Linux.h"
#include "platform/linux/notifications/NotifyAgent.h"

/// Fires notifications for applications that do not run, and ends when there are none.
int main() {
  using namespace ovinta::platform;
  const auto registry = linux::AgentRegistry::ofUser();
  if (!registry) return 1;
  const Services services =
      linux::makeServices({.applicationID = "ovinta-notify-agent", .usesNotifyAgent = false});
  const auto bus = std::make_shared<linux::dbus::Bus>(linux::dbus::sessionBusAddress(),
                                                      services.mainQueue, services.log);
  linux::NotifyAgent agent(services, bus, *registry, linux::quitMainLoop);
  linux::runMainLoop();
  return 0;
}
