#include "platform/linux/Linux.h"

#include "platform/linux/CurlURLSession.h"
#include "platform/linux/DirectoryBundle.h"
#include "platform/linux/GLibMainQueue.h"
#include "platform/linux/InMemoryUserNotificationCenter.h"
#include "platform/linux/LibraryBundle.h"
#include "platform/linux/PrivateDirectory.h"
#include "platform/linux/SQLitePersistentContainer.h"
#include "platform/linux/SQLiteSettingsStore.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemDevice.h"
#include "platform/linux/SystemLocationServices.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/TextServices.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/position/GeoClueProvider.h"
#include "platform/standard/Standard.h"

namespace ovinta::platform::linux {
namespace {

namespace fs = std::filesystem;

/// Absolute, so that a later change of the working directory moves nothing.
std::optional<fs::path> dataDirectory(const Options& options, const std::string& applicationID) {
  if (options.dataDirectory) return fs::absolute(*options.dataDirectory);
  return defaultDataDirectory(applicationID);
}

std::optional<fs::path> settingsFile(const std::optional<fs::path>& directory) {
  if (!directory) return std::nullopt;
  return *directory / "Settings.sqlite";
}

}  // namespace

Services makeServices(const Options& options) {
  rememberMainThread();
  const auto executable = executablePath();
  const auto applicationID = options.applicationID.value_or(executable.filename().string());
  const auto directory = dataDirectory(options, applicationID);

  Services services;
  services.clock = std::make_shared<SystemClock>();
  services.log = std::make_shared<SystemLog>(applicationID);
  services.mainQueue = std::make_shared<GLibMainQueue>();
  services.operationQueues = standard::makeOperationQueueFactory();
  services.notificationCenter = standard::makeNotificationCenter();
  services.settings = std::make_shared<SQLiteSettingsStore>(settingsFile(directory), services.log);
  services.mainBundle = std::make_shared<DirectoryBundle>(
      fs::absolute(options.mainBundleDirectory.value_or(executable.parent_path())));
  services.libraryBundle = std::make_shared<LibraryBundle>();
  services.text = makeText();
  services.dateFormatters = makeDateFormatterFactory();
  services.urls = makeURLFormat();
  services.urlSession = std::make_shared<CurlURLSession>();
  services.persistentContainers = std::make_shared<SQLitePersistentContainerFactory>(directory);
  services.geodesy = makeGeodesy();
  services.userNotifications =
      std::make_shared<InMemoryUserNotificationCenter>(*services.operationQueues);
  const auto systemBus =
      std::make_shared<dbus::Bus>(dbus::systemBusAddress(), services.mainQueue, services.log);
  services.location = std::make_shared<SystemLocationServices>(
      std::make_shared<GeoClueProvider>(systemBus, services.mainQueue,
                                        GeoClueProvider::Options{.desktopID = applicationID}),
      services.mainQueue);
  services.device = std::make_shared<SystemDevice>(systemBus, services.mainQueue);
  return services;
}

void applicationDidBecomeActive() {
  services().notificationCenter->post({kApplicationDidBecomeActive, {}});
}

}  // namespace ovinta::platform::linux
