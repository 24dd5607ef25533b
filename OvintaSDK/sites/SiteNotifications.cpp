#include "OvintaSDK/sites/SiteNotifications.h"

#include <utility>

#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/WithoutNulls.h"
#include "OvintaSDK/model/SiteCoordinate.h"
#include "OvintaSDK/sites/Sites.h"

namespace ovinta {
namespace {

using platform::UserNotificationRequest;

/// The error when the device may not be followed; null otherwise.
ErrorPtr permissionError(const platform::LocationServices& location) {
  if (location.locationServicesEnabled() &&
      platform::isAuthorized(location.authorizationStatus())) {
    return nullptr;
  }
  return std::make_shared<const NotifyManagerError>(NotifyManagerErrorType::noLocationPermission);
}

std::vector<std::string> ownIdentifiers(const std::vector<UserNotificationRequest>& pending) {
  std::vector<std::string> identifiers;
  for (const UserNotificationRequest& request : pending) {
    if (SiteNotifications::isOwn(request.content.userInfo))
      identifiers.push_back(request.identifier);
  }
  return identifiers;
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

/// The request as the log tells of it, without what the application put into it.
std::string description(const UserNotificationRequest& request) {
  const platform::CircularRegion& region = request.trigger.region;
  return "<" + request.identifier + ": " + numberText(region.radius) + " m around " +
         numberText(region.center.latitude) + ", " + numberText(region.center.longitude) + ">";
}

}  // namespace

bool SiteNotifications::isOwn(const platform::Dictionary& userInfo) {
  const auto* source = platform::find<std::string>(userInfo, NotifyManager::kSourceName);
  return source && *source == NotifyManager::kOvintaNotify;
}

void SiteNotifications::createForSites(const SiteList& sites, const NotificationInfo& notification,
                                       ErrorCallback callback) {
  const SiteList usable = withoutNulls(sites);
  ErrorPtr error = permissionError(*context_->services().location);
  if (!error && usable.size() > NotifyManager::kMaxNumberOfSites) {
    error = std::make_shared<const NotifyManagerError>(
        NotifyManagerErrorType::reachedTheMaxNumberOfSites);
  }
  if (error) return tellError(callback, error);
  Requests requests;
  for (const SitePtr& site : usable) {
    if (auto request = makeRequest(*site, notification)) requests.push_back(*std::move(request));
  }
  replace(std::move(requests), std::move(callback));
}

void SiteNotifications::createForSitesInRegion(const platform::CircularRegion& region,
                                               const NotificationInfo& notification,
                                               SitesCallback callback) {
  if (const ErrorPtr error = permissionError(*context_->services().location)) {
    return tellError(callback, error);
  }
  sites_()->fetch(region, 1, std::int64_t{NotifyManager::kMaxNumberOfSites},
                  [self = shared_from_this(), notification, callback = std::move(callback)](
                      const std::optional<SiteList>& sites, const ErrorPtr& error) {
                    if (!error && sites) {
                      self->createForSites(*sites, notification,
                                           [callback](const ErrorPtr& failure) {
                                             if (failure && callback)
                                               callback(std::nullopt, failure);
                                           });
                    }
                    if (callback) callback(error ? std::nullopt : sites, error);
                  });
}

void SiteNotifications::replace(Requests requests, ErrorCallback callback) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back({std::move(requests), std::move(callback)});
    if (waiting_.size() > 1) return;
  }
  begin();
}

void SiteNotifications::begin() {
  context_->services().userNotifications->getPendingNotificationRequests(
      [self = shared_from_this()](const auto& pending) { self->replaceAll(pending); });
}

void SiteNotifications::replaceAll(const Requests& pending) {
  context_->services().userNotifications->removePendingNotificationRequests(
      ownIdentifiers(pending));
  // The replacement stays in the queue while it is carried out, so that nobody else begins.
  const Replacement& first = front();
  for (const UserNotificationRequest& request : first.requests) arm(request);
  if (first.callback) first.callback(nullptr);
  if (!endFirst()) begin();
}

void SiteNotifications::arm(const UserNotificationRequest& request) {
  context_->services().userNotifications->add(
      request, [self = shared_from_this(), text = description(request)](const auto& error) {
        if (!error) return;
        self->context_->log("Failed to add notification request " + text +
                            ", with error: " + error->localizedDescription);
      });
}

const SiteNotifications::Replacement& SiteNotifications::front() {
  const std::lock_guard lock(mutex_);
  return waiting_.front();
}

bool SiteNotifications::endFirst() {
  // What the callback holds is destroyed outside of the lock.
  Replacement first;
  const std::lock_guard lock(mutex_);
  first = std::move(waiting_.front());
  waiting_.pop_front();
  return waiting_.empty();
}

}  // namespace ovinta
