#include "platform/linux/location/geoclue/GeoClueProvider.h"

#include <glib.h>

#include <utility>

#include "platform/linux/location/geoclue/GeoClueStream.h"

namespace ovinta::platform::linuxos {
namespace {

/// Whether GeoClue's configuration names the application as a component of the system, which may
/// follow the position whenever it likes.
bool isSystemComponent(const std::filesystem::path& configuration, const std::string& desktopID) {
  const std::unique_ptr<GKeyFile, void (*)(GKeyFile*)> file(g_key_file_new(), &g_key_file_unref);
  g_key_file_load_from_file(file.get(), configuration.c_str(), G_KEY_FILE_NONE, nullptr);
  const auto says = [&](const char* key) {
    return g_key_file_get_boolean(file.get(), desktopID.c_str(), key, nullptr) == TRUE;
  };
  return says("allowed") && says("system");
}

}  // namespace

GeoClueProvider::GeoClueProvider(std::shared_ptr<dbus::Bus> systemBus,
                                 std::shared_ptr<MainQueue> mainQueue, Options options)
    : bus_(systemBus),
      mainQueue_(std::move(mainQueue)),
      options_(std::move(options)),
      service_(std::move(systemBus), kGeoClueName) {}

void GeoClueProvider::findService(std::function<void(bool)> handler) {
  service_.find(std::move(handler));
}

std::shared_ptr<void> GeoClueProvider::watchArrivals(const std::function<void()>& handler) {
  const auto service = std::make_shared<dbus::Service>(bus_, kGeoClueName);
  service->onArrival(handler);
  return service;
}

std::unique_ptr<PositionStream> GeoClueProvider::open(double distanceFilter,
                                                      PositionHandlers handlers) {
  const bool isComponent = isSystemComponent(options_.configuration, options_.desktopID);
  return std::make_unique<GeoClueStream>(
      bus_, mainQueue_,
      GeoClueStream::Options{options_.desktopID, distanceFilter,
                             isComponent ? PositionAccess::grantedAlways : PositionAccess::granted,
                             options_.answerTimeout, options_.retryInterval},
      std::move(handlers));
}

}  // namespace ovinta::platform::linuxos
