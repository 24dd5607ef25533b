#pragma once

#include <memory>

#include "Bundle.h"
#include "Clock.h"
#include "DateFormatter.h"
#include "Delivery.h"
#include "Device.h"
#include "Export.h"
#include "Location.h"
#include "LocationManager.h"
#include "Log.h"
#include "MainQueue.h"
#include "NotificationCenter.h"
#include "OperationQueue.h"
#include "PersistentContainer.h"
#include "SettingsStore.h"
#include "Text.h"
#include "URL.h"
#include "URLSession.h"
#include "UserNotificationCenter.h"

namespace ovinta::platform {

// "A plain value", in the headers of the platform too, is a record that follows the rule of the
// standard containers: any number of threads may read it as long as none changes it.

/// Everything that the library needs of the platform; each is described at its type. None but
/// `delivery` may be null when installed. A plain value; the services themselves may be called as
/// their types say.
struct Services {
  /// Described at their types, as the others without words of their own.
  std::shared_ptr<Clock> clock;
  std::shared_ptr<Log> log;
  std::shared_ptr<MainQueue> mainQueue;
  std::shared_ptr<OperationQueueFactory> operationQueues;
  /// The one on which the library posts (`SDKNotification`) and observes.
  std::shared_ptr<NotificationCenter> notificationCenter;
  std::shared_ptr<SettingsStore> settings;
  /// The host application's bundle: its version and its provisioning profile.
  std::shared_ptr<Bundle> mainBundle;
  /// The library's own bundle: its version and the model of the order store.
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
  /// Keeps what could not be sent, and sends it later; null where that is off. The library does not
  /// use it.
  std::shared_ptr<Delivery> delivery = {};
};

/// Sets the services that the library uses from now on. Call it once, before any other use of the
/// library; without it those of the platform library that is linked serve. Kept until the process
/// ends. A null service is a fatal error, which names it. May be called from any thread.
OVINTA_EXPORT void install(Services services);

/// The services in force, made on first use where none were installed. May be called from any
/// thread; the reference stays valid for ever.
OVINTA_EXPORT const Services& services();

}  // namespace ovinta::platform
