#pragma once

#include <memory>

#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/DateFormatter.h"
#include "platform/Device.h"
#include "platform/Export.h"
#include "platform/Location.h"
#include "platform/LocationManager.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/NotificationCenter.h"
#include "platform/OperationQueue.h"
#include "platform/PersistentContainer.h"
#include "platform/SettingsStore.h"
#include "platform/Text.h"
#include "platform/URL.h"
#include "platform/URLSession.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta::platform {

/// Everything that the library needs of the platform. None may be null when installed.
struct Services {
  std::shared_ptr<Clock> clock;
  std::shared_ptr<Log> log;
  std::shared_ptr<MainQueue> mainQueue;
  std::shared_ptr<OperationQueueFactory> operationQueues;
  /// The process's default notification centre.
  std::shared_ptr<NotificationCenter> notificationCenter;
  std::shared_ptr<SettingsStore> settings;
  /// The host application's bundle.
  std::shared_ptr<Bundle> mainBundle;
  /// The library's own bundle.
  std::shared_ptr<Bundle> libraryBundle;
  std::shared_ptr<Text> text;
  std::shared_ptr<DateFormatterFactory> dateFormatters;
  std::shared_ptr<URLFormat> urls;
  std::shared_ptr<URLSession> urlSession;
  std::shared_ptr<PersistentContainerFactory> persistentContainers;
  std::shared_ptr<Geodesy> geodesy;
  std::shared_ptr<LocationServices> location;
  std::shared_ptr<UserNotificationCenter> userNotifications;
  std::shared_ptr<Device> device;
};

/// Sets the services that the library uses from now on. Call it once, before any other use of the
/// library; without it the services of this system serve. Kept until the process ends. A null
/// service is a fatal error. May be called from any thread.
OVINTA_EXPORT void install(Services services);

/// The services in force. May be called from any thread; the reference stays valid for ever.
OVINTA_EXPORT const Services& services();

}  // namespace ovinta::platform
