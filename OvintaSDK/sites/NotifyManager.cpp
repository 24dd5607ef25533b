#include "OvintaSDK/sites/NotifyManager.h"

#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/model/SiteCoordinate.h"
#include "platform/Services.h"

namespace ovinta {
namespace {

using platform::services;
using platform::UserNotificationRequest;

bool isOwn(const platform::Dictionary& userInfo) {
  const auto* source = platform::find<std::string>(userInfo, NotifyManager::kSourceName);
  return source && *source == NotifyManager::kOvintaNotify;
}

/// The error when the device may not be followed; null otherwise.
ErrorPtr permissionError() {
  const platform::LocationServices& location = *services().location;
  if (location.locationServicesEnabled() &&
      platform::isAuthorized(location.authorizationStatus())) {
    return nullptr;
  }
  return std::make_shared<const NotifyManagerError>(NotifyManagerErrorType::noLocationPermission);
}

void removeOwn(const std::vector<UserNotificationRequest>& pending) {
  std::vector<std::string> identifiers;
  for (const UserNotificationRequest& request : pending) {
    if (isOwn(request.content.userInfo)) identifiers.push_back(request.identifier);
  }
  services().userNotifications->removePendingNotificationRequests(std::move(identifiers));
}

platform::UserNotificationContent makeContent(const NotificationInfo& info) {
  platform::Dictionary userInfo = info.data.value_or(platform::Dictionary{});
  userInfo.insert_or_assign(std::string(NotifyManager::kSourceName),
                            std::string(NotifyManager::kOvintaNotify));
  return {.title = info.title,
          .body = info.content,
          .sound = platform::NotificationSound::defaultSound,
          .userInfo = std::move(userInfo)};
}

/// The request for a site; absent when it has no geofence whose centre is a pair of numbers.
std::optional<UserNotificationRequest> makeRequest(const Site& site,
                                                   const NotificationInfo& notification) {
  if (!site.geofence) return std::nullopt;
  const auto center = locationFromTexts(site.geofence->latitude, site.geofence->longitude);
  if (!center) return std::nullopt;
  const std::string identifier =
      std::string(NotifyManager::kOvintaNotify) + " " + std::to_string(site.id);
  return UserNotificationRequest{.identifier = identifier,
                                 .content = makeContent(notification),
                                 .trigger = {.region = {.center = center->coordinate,
                                                        .radius = site.geofence->radiusMeters,
                                                        .identifier = identifier,
                                                        .notifyOnEntry = true,
                                                        .notifyOnExit = false},
                                             .repeats = false}};
}

/// The request for the log: what the application put into it stays out.
std::string description(const UserNotificationRequest& request) {
  const platform::CircularRegion& region = request.trigger.region;
  return "<" + request.identifier + ": " + numberText(region.radius) + " m around " +
         numberText(region.center.latitude) + ", " + numberText(region.center.longitude) + ">";
}

void add(const UserNotificationRequest& request) {
  services().userNotifications->add(request, [text = description(request)](const auto& error) {
    if (!error) return;
    logLine("Failed to add notification request " + text +
            ", with error: " + error->localizedDescription);
  });
}

}  // namespace

void NotifyManager::createForSites(const SiteList& sites, const NotificationInfo& notification,
                                   ErrorCallback callback) {
  ErrorPtr error = permissionError();
  if (!error && sites.size() > kMaxNumberOfSites) {
    error = std::make_shared<const NotifyManagerError>(
        NotifyManagerErrorType::reachedTheMaxNumberOfSites);
  }
  if (error) {
    if (callback) callback(error);
    return;
  }
  services().userNotifications->getPendingNotificationRequests(
      [sites, notification, callback = std::move(callback)](const auto& pending) {
        removeOwn(pending);
        for (const SitePtr& site : sites) {
          if (const auto request = makeRequest(*site, notification)) add(*request);
        }
        if (callback) callback(nullptr);
      });
}

void NotifyManager::createForSitesInRegion(const platform::CircularRegion& region,
                                           const NotificationInfo& notification,
                                           SitesCallback callback) {
  if (const ErrorPtr error = permissionError()) {
    if (callback) callback(std::nullopt, error);
    return;
  }
  OvintaState::current().sites().fetch(
      region, 1, static_cast<std::int64_t>(kMaxNumberOfSites),
      [this, notification, callback = std::move(callback)](const std::optional<SiteList>& sites,
                                                           const ErrorPtr& error) {
        if (!error && sites) {
          createForSites(*sites, notification, [callback](const ErrorPtr& failure) {
            if (failure && callback) callback(std::nullopt, failure);
          });
        }
        if (callback) callback(error ? std::nullopt : sites, error);
      });
}

void NotifyManager::clear(ErrorCallback callback) {
  services().userNotifications->getPendingNotificationRequests(
      [callback = std::move(callback)](const auto& pending) {
        removeOwn(pending);
        if (callback) callback(nullptr);
      });
}

bool NotifyManager::isOvintaNotifyUserInfo(const platform::Dictionary& userInfo) const {
  return isOwn(userInfo);
}

}  // namespace ovinta
