#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "../../platform/Export.h"
#include "../../platform/Region.h"
#include "../../platform/Value.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/sites/NotificationInfo.h"
#include "OvintaSDK/sites/NotifyManagerError.h"
#include "OvintaSDK/sites/SitesManager.h"

namespace ovinta {

class Library;
class SiteNotifications;

/// Arranges local notifications that fire once, when the user enters the geofence of a site;
/// reached as `Ovinta::notify()`. What is armed is kept by the platform's notification centre, also
/// across restarts. All methods may be called from any thread and return at once; callbacks, which
/// may be empty, run inside the call when the request is refused at once, otherwise on the thread
/// on which the notification centre or the URL session answers. They must not throw, nor wait for
/// what a later call does. What is asked while something else is still being armed or disarmed
/// waits for that to end, so that each call finds all that the calls before it have armed. It may
/// be destroyed while its requests are under way: they end as they would have.
class OVINTA_EXPORT NotifyManager {
 public:
  /// The key in a notification's user info that marks the library's own, and its value there.
  static constexpr std::string_view kSourceName = "message_source";
  static constexpr std::string_view kOvintaNotify = "ovinta.notify";
  /// The most sites that one call may arm.
  static constexpr std::size_t kMaxNumberOfSites = 5;

  /// One of the application's own, which does the same as `Ovinta::notify()`.
  NotifyManager();
  ~NotifyManager();
  NotifyManager(const NotifyManager&) = delete;
  NotifyManager& operator=(const NotifyManager&) = delete;

  /// Arms a notification for each site that has a geofence with numbers for a centre, in place of
  /// all armed before; other sites and null entries are passed over. The callback is called exactly
  /// once: with null when the requests were handed over (one that the notification centre does not
  /// accept is told in the log alone), or with the error: `NotifyManagerError` of type
  /// `noLocationPermission` or `reachedTheMaxNumberOfSites`; what was armed then stays.
  void createForSites(const SiteList& sites, const NotificationInfo& notification,
                      ErrorCallback callback = {});

  /// Arms notifications for the first `kMaxNumberOfSites` sites that the service finds in the
  /// circle, which also become `Ovinta::sites().all()`. The callback receives the sites or the
  /// error, and is left out where that of `SitesManager::fetch` is. When arming them fails it is
  /// called twice: first with the error, then with the sites. Errors: those of `createForSites` and
  /// of `SitesManager::fetch`.
  void createForSitesInRegion(const platform::CircularRegion& region,
                              const NotificationInfo& notification, SitesCallback callback = {});

  /// Disarms all. Notifications already shown stay. The callback is called exactly once, with null.
  void clear(ErrorCallback callback = {});

  /// Whether the user info of a notification shows that it is one of the library's own.
  bool isOvintaNotifyUserInfo(const platform::Dictionary& userInfo) const;

 private:
  friend class Library;
  explicit NotifyManager(std::shared_ptr<SiteNotifications> notifications)
      : notifications_(std::move(notifications)) {}

  const std::shared_ptr<SiteNotifications> notifications_;
};

}  // namespace ovinta
