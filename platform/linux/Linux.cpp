#include "platform/linux/Linux.h"

#include <time.h>

#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "platform/DefaultServices.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/device/SystemDevice.h"
#include "platform/linux/http/CurlURLSession.h"
#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/PositionProviders.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/beacons/BeaconScanner.h"
#include "platform/linux/main/ApplicationOptions.h"
#include "platform/linux/main/DirectoryBundle.h"
#include "platform/linux/main/GLibMainQueue.h"
#include "platform/linux/main/MainThread.h"
#include "platform/linux/main/SystemClock.h"
#include "platform/linux/main/SystemLog.h"
#include "platform/linux/network/GioNetworkMonitor.h"
#include "platform/linux/notifications/StoredUserNotificationCenter.h"
#include "platform/linux/storage/SQLiteOutbox.h"
#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "platform/linux/storage/SQLiteSettingsStore.h"
#include "platform/portable/Portable.h"

namespace ovinta::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// The file of that name in the data directory; absent where the application has no such directory,
/// so that the content stays in memory.
std::optional<fs::path> fileIn(const std::optional<fs::path>& directory, const char* name) {
  return directory ? std::optional(*directory / name) : std::nullopt;
}

std::shared_ptr<Bundle> makeMainBundle(const Options& options, Log& log) {
  auto directory = mainBundleDirectoryOf(options);
  if (directory.empty()) log.write("The application's resources have no directory that is there");
  return std::make_shared<DirectoryBundle>(std::move(directory));
}

/// The notification centre, which keeps those of the services that `StoredUserNotificationCenter`
/// says it uses.
std::shared_ptr<UserNotificationCenter> makeUserNotifications(
    const Options& options, const std::string& applicationID,
    const std::optional<fs::path>& directory, std::shared_ptr<dbus::Bus> sessionBus,
    const Services& services) {
  StoredUserNotificationCenter::Options centerOptions{
      .applicationID = applicationID,
      .file = fileIn(directory, "Notifications.sqlite"),
      .agents = {},
      .usesAgent = options.usesNotifyAgent,
      .positionSource = options.positionSource,
      .onClicked = options.onNotificationClicked};
  if (!isSandboxed()) centerOptions.agents = AgentRegistry::ofUser();
  return std::make_shared<StoredUserNotificationCenter>(services, std::move(sessionBus),
                                                        std::move(centerOptions));
}

BeaconScanner::Options beaconOptions(const Options& options, Log& log) {
  const double exponent = options.beaconPathLossExponent.value_or(portable::kFreeSpaceExponent);
  if (exponent >= 1 && exponent <= 10) return {.pathLossExponent = exponent};
  log.write("The path-loss exponent for beacons is not between 1 and 10: " +
            std::to_string(exponent));
  return {};
}

CurlURLSession::Options httpOptions(const Options& options, const GLibMainQueue& mainQueue,
                                    Log& log) {
  CurlURLSession::Options http;
  const auto timeLimit = options.requestTimeLimit.value_or(http.timeLimit);
  const auto sizeLimit = options.answerSizeLimit.value_or(http.sizeLimit);
  if (timeLimit.count() > 0) {
    http.timeLimit = timeLimit;
  } else {
    log.write("The time limit of requests is no time: " + std::to_string(timeLimit.count()) +
              " ms");
  }
  if (sizeLimit > 0) {
    http.sizeLimit = sizeLimit;
  } else {
    log.write("The size limit of answers is 0.");
  }
  // Most tasks come of answers, so that the thread of these is there when nobody runs them.
  http.beforeWaiting = mainQueue.watch();
  return http;
}

/// The time since the device was started, its sleep included.
TimeInterval uptime() {
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::duration_cast<TimeInterval>(std::chrono::seconds(time.tv_sec) +
                                                  std::chrono::nanoseconds(time.tv_nsec));
}

std::uint64_t randomBits() {
  // Small numbers of bits from the system: they are asked for once an event or a try.
  std::random_device device;
  return std::uint64_t{device()} << 32U | device();
}

portable::DeliveryParts deliveryParts(const std::optional<fs::path>& directory,
                                      const Services& services) {
  portable::DeliveryParts parts;
  parts.outbox = std::make_shared<SQLiteOutbox>(fileIn(directory, kOutboxFile), services.log);
  parts.network = std::make_shared<GioNetworkMonitor>(services.mainQueue);
  parts.uptime = &uptime;
  parts.random = &randomBits;
  // A request without a URL fails soon, and nowhere but on that thread.
  parts.onCallbackThread = [session = services.urlSession](const std::function<void()>& task) {
    session->startDataTask({}, [task](const auto&...) { task(); });
  };
  return parts;
}

/// The position hubs of all services that live, oldest first, for the functions of this header that
/// are given no services.
struct PositionHubs {
  struct Entry {
    std::weak_ptr<PositionHub> hub;
    std::shared_ptr<MainQueue> mainQueue;
  };

  void prune() {
    std::erase_if(entries, [](const Entry& entry) { return entry.hub.expired(); });
  }

  std::mutex mutex;
  std::vector<Entry> entries;
};

PositionHubs& positionHubs() {
  static auto* const instance = new PositionHubs;
  return *instance;
}

std::shared_ptr<PositionHub> makePositionHub(PositionSource source,
                                             const std::string& applicationID,
                                             const std::shared_ptr<dbus::Bus>& systemBus,
                                             const std::shared_ptr<dbus::Bus>& sessionBus,
                                             const Services& services) {
  auto hub = std::make_shared<PositionHub>(
      makePositionProvider(source, applicationID, systemBus, sessionBus, services),
      services.mainQueue, KeptAccess(services.settings, chosenSource(source)));
  const std::lock_guard lock(positionHubs().mutex);
  positionHubs().prune();
  positionHubs().entries.push_back({hub, services.mainQueue});
  return hub;
}

/// The position hub of the services made last; absent where none live.
std::optional<PositionHubs::Entry> lastEntry() {
  const std::lock_guard lock(positionHubs().mutex);
  positionHubs().prune();
  if (positionHubs().entries.empty()) return std::nullopt;
  return positionHubs().entries.back();
}

void onLastHub(void (PositionHub::*step)()) {
  const auto last = lastEntry();
  if (!last) return;
  last->mainQueue->async([step, weak = last->hub] {
    if (const auto hub = weak.lock()) (*hub.*step)();
  });
}

}  // namespace

Services makeServices(const Options& options) {
  rememberMainThread();
  const auto applicationID = applicationIDOf(options);
  const auto directory = dataDirectoryOf(options);

  Services services = makeValueServices();
  services.clock = std::make_shared<SystemClock>();
  services.log = options.log ? options.log : std::make_shared<SystemLog>(applicationID);
  const auto mainQueue =
      std::make_shared<GLibMainQueue>(GLibMainQueue::Options{.log = services.log});
  services.mainQueue = mainQueue;
  services.operationQueues = portable::makeOperationQueueFactory();
  services.notificationCenter = portable::makeNotificationCenter();
  services.settings =
      std::make_shared<SQLiteSettingsStore>(fileIn(directory, "Settings.sqlite"), services.log);
  services.mainBundle = makeMainBundle(options, *services.log);
  services.libraryBundle = portable::makeLibraryBundle();
  services.urlSession =
      std::make_shared<CurlURLSession>(httpOptions(options, *mainQueue, *services.log));
  services.persistentContainers = std::make_shared<SQLitePersistentContainerFactory>(directory);
  const auto systemBus =
      std::make_shared<dbus::Bus>(systemBusAddressOf(options), services.mainQueue, services.log);
  const auto sessionBus =
      std::make_shared<dbus::Bus>(dbus::sessionBusAddress(), services.mainQueue, services.log);
  services.location = std::make_shared<SystemLocationServices>(
      makePositionHub(options.positionSource, applicationID, systemBus, sessionBus, services),
      std::make_shared<BeaconScanner>(systemBus, services.mainQueue, services.log,
                                      beaconOptions(options, *services.log)));
  services.device = std::make_shared<SystemDevice>(systemBus, services.clock);
  services.userNotifications =
      makeUserNotifications(options, applicationID, directory, sessionBus, services);
  if (options.delivery) {
    portable::addDelivery(services, *options.delivery, deliveryParts(directory, services));
  }
  return services;
}

void requestLocationAuthorization() { onLastHub(&PositionHub::askPermission); }

bool isLocationAuthorizationKept() {
  const auto last = lastEntry();
  const auto hub = last ? last->hub.lock() : nullptr;
  return hub && hub->isOfOld();
}

void applicationDidBecomeActive() {
  onLastHub(&PositionHub::askAgain);
  services().notificationCenter->post({kApplicationDidBecomeActive, {}});
}

}  // namespace ovinta::platform::linuxos

ovinta::platform::Services ovinta::platform::makeDefaultServices() {
  return linuxos::makeServices();
}
