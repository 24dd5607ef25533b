#include "OvintaSDK/sites/NotifyManager.h"

#include <utility>

#include "OvintaSDK/sites/SiteNotifications.h"

namespace ovinta {

template class ManagerError<NotifyManagerErrorType>;

NotifyManager::~NotifyManager() = default;

void NotifyManager::createForSites(const SiteList& sites, const NotificationInfo& notification,
                                   ErrorCallback callback) {
  notifications_->createForSites(sites, notification, std::move(callback));
}

void NotifyManager::createForSitesInRegion(const platform::CircularRegion& region,
                                           const NotificationInfo& notification,
                                           SitesCallback callback) {
  notifications_->createForSitesInRegion(region, notification, std::move(callback));
}

void NotifyManager::clear(ErrorCallback callback) { notifications_->clear(std::move(callback)); }

bool NotifyManager::isOvintaNotifyUserInfo(const platform::Dictionary& userInfo) const {
  return SiteNotifications::isOwn(userInfo);
}

}  // namespace ovinta
