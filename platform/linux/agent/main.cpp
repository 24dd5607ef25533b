#include "platform/linux/Linux.h"
#include "platform/linux/location/PositionProviders.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/notifications/NotifyAgent.h"

namespace {

using namespace ovinta::platform;

/// The location services under the application's own name, because the permission is the
/// application's.
std::shared_ptr<LocationServices> locationFor(const linuxos::RegisteredApplication& application,
                                              const std::shared_ptr<linuxos::dbus::Bus>& systemBus,
                                              const std::shared_ptr<linuxos::dbus::Bus>& sessionBus,
                                              const Services& services) {
  return std::make_shared<linuxos::SystemLocationServices>(
      std::make_shared<linuxos::PositionHub>(
          linuxos::makePositionProvider(application.positionSource, application.applicationID,
                                        systemBus, sessionBus, services),
          services.mainQueue),
      std::make_shared<linuxos::BeaconScanner>(systemBus, services.mainQueue, services.log,
                                               linuxos::BeaconScanner::Options{}));
}

}  // namespace

/// Fires notifications for applications that do not run, and ends when there are none.
int main() {
  const auto registry = linuxos::AgentRegistry::ofUser();
  if (!registry) return 1;
  const Services services =
      linuxos::makeServices({.applicationID = "ovinta-notify-agent", .usesNotifyAgent = false});
  const auto bus = [&](std::string address) {
    return std::make_shared<linuxos::dbus::Bus>(std::move(address), services.mainQueue,
                                                services.log);
  };
  const auto systemBus = bus(linuxos::dbus::systemBusAddress());
  const auto sessionBus = bus(linuxos::dbus::sessionBusAddress());
  linuxos::NotifyAgent agent(
      services,
      [&](const auto& application) {
        return locationFor(application, systemBus, sessionBus, services);
      },
      sessionBus, *registry, linuxos::quitMainLoop);
  linuxos::runMainLoop();
  return 0;
}
