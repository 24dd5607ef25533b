#include "platform/linux/location/PositionProviders.h"

#include "platform/linux/location/geoclue/GeoClueProvider.h"
#include "platform/linux/location/gpsd/GpsdProvider.h"
#include "platform/linux/location/portal/PortalProvider.h"

namespace ovinta::platform::linuxos {

bool isSandboxed(const std::filesystem::path& sandboxMark) {
  std::error_code error;
  return exists(sandboxMark, error);
}

PositionSource chosenSource(PositionSource source, const std::filesystem::path& sandboxMark) {
  if (source != PositionSource::automatic) return source;
  return isSandboxed(sandboxMark) ? PositionSource::portal : PositionSource::geoclue;
}

std::shared_ptr<PositionProvider> makePositionProvider(PositionSource source,
                                                       const std::string& applicationID,
                                                       const std::shared_ptr<dbus::Bus>& systemBus,
                                                       const std::shared_ptr<dbus::Bus>& sessionBus,
                                                       const Services& services) {
  switch (chosenSource(source)) {
    case PositionSource::gpsd:
      return std::make_shared<GpsdProvider>(services.mainQueue, services.geodesy,
                                            GpsdProvider::Options{.log = services.log});
    case PositionSource::portal:
      return std::make_shared<PortalProvider>(sessionBus, services.mainQueue);
    case PositionSource::automatic:
    case PositionSource::geoclue:
      break;
  }
  return std::make_shared<GeoClueProvider>(systemBus, services.mainQueue,
                                           GeoClueProvider::Options{.desktopID = applicationID});
}

}  // namespace ovinta::platform::linuxos
