#pragma once

#include <functional>
#include <memory>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

inline constexpr const char* kPortalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* kPortalLocation = "org.freedesktop.portal.Location";

/// Positions from the location portal, for applications in a sandbox. It asks the user at the first
/// time.
class PortalProvider : public PositionProvider {
 public:
  PortalProvider(std::shared_ptr<dbus::Bus> sessionBus, std::shared_ptr<MainQueue> mainQueue,
                 TimeInterval retryInterval = std::chrono::seconds(15));

  void findService(std::function<void(bool)> handler) override;
  std::shared_ptr<void> watchArrivals(const std::function<void()>& handler) override;
  std::unique_ptr<PositionStream> open(double distanceFilter, PositionHandlers handlers) override;

 private:
  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const TimeInterval retryInterval_;
  dbus::Service service_;
};

}  // namespace ovinta::platform::linuxos
