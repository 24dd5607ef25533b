#include <map>

#include "platform/linux/Linux.h"
#include "platform/linux/notifications/NotifyAgent.h"

namespace {

using namespace ovinta::platform;

Services servicesFor(linux::PositionSource source) {
  return linux::makeServices(
      {.applicationID = "ovinta-notify-agent", .positionSource = source, .usesNotifyAgent = false});
}

}  // namespace

/// Fires notifications for applications that do not run, and ends when there are none.
int main() {
  const auto registry = linux::AgentRegistry::ofUser();
  if (!registry) return 1;
  const Services services = servicesFor(linux::PositionSource::automatic);
  const auto bus = std::make_shared<linux::dbus::Bus>(linux::dbus::sessionBusAddress(),
                                                      services.mainQueue, services.log);
  std::map<linux::PositionSource, std::shared_ptr<LocationServices>> locations{
      {linux::PositionSource::automatic, services.location}};
  const auto location = [&](linux::PositionSource source) {
    auto& known = locations[source];
    if (!known) known = servicesFor(source).location;
    return known;
  };
  linux::NotifyAgent agent(services, location, bus, *registry, linux::quitMainLoop);
  linux::runMainLoop();
  return 0;
}
