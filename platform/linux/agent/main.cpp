#include "platform/linux/Linux.h"
#include "platform/linux/SystemLocationServices.h"
#include "platform/linux/notifications/NotifyAgent.h"
#include "platform/linux/position/PositionProviders.h"

namespace {

using namespace ovinta::platform;

/// Under the application's own name, whose permission it is.
std::shared_ptr<LocationServices> locationFor(const linux::RegisteredApplication& application,
                                              const std::shared_ptr<linux::dbus::Bus>& systemBus,
                                              const std::shared_ptr<linux::dbus::Bus>& sessionBus,
                                              const Services& services) {
  return std::make_shared<linux::SystemLocationServices>(
      std::make_shared<linux::PositionHub>(
          linux::makePositionProvider(application.positionSource, application.applicationID,
                                      systemBus, sessionBus, services),
          services.mainQueue),
      std::make_shared<linux::BeaconScanner>(systemBus, services.mainQueue, services.log,
                                             linux::BeaconScanner::Settings{}),
      services.geodesy);
}

}  // namespace

/// Fires notifications for applications that do not run, and ends when there are none.
int main() {
  const auto registry = linux::AgentRegistry::ofUser();
  if (!registry) return 1;
  const Services services =
      linux::makeServices({.applicationID = "ovinta-notify-agent", .usesNotifyAgent = false});
  const auto bus = [&](std::string address) {
    return std::make_shared<linux::dbus::Bus>(std::move(address), services.mainQueue, services.log);
  };
  const auto systemBus = bus(linux::dbus::systemBusAddress());
  const auto sessionBus = bus(linux::dbus::sessionBusAddress());
  linux::NotifyAgent agent(
      services,
      [&](const auto& application) {
        return locationFor(application, systemBus, sessionBus, services);
      },
      sessionBus, *registry, linux::quitMainLoop);
  linux::runMainLoop();
  return 0;
}
