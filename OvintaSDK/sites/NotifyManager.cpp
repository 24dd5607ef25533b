#include "OvintaSDK/sites/NotifyManager.h"

#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/WithoutNulls.h"
#include "OvintaSDK/model/SiteCoordinate.h"
#include "platform/Services.h"

namespace ovinta {
namespace {

using platform::services;
using platform::UserNotificationRequest;
using Requests = std::vector<UserNotificationRequest>;

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

void removeOwn(const Requests& pending) {
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

void arm(const UserNotificationRequest& request) {
  services().userNotifications->add(request, [text = description(request)](const auto& error) {
    if (!error) return;
    logLine("Failed to add notification request " + text +
            ", with error: " + error->localizedDescription);
  });
}

}  // namespace

/// The replacements of what is armed, one at a time in the order of the calls: one that looked for
/// what to remove before another has added its requests would miss them.
class NotificationReplacements : public std::enable_shared_from_this<NotificationReplacements> {
 public:
  /// Has the requests armed in place of all of the library's own, and `callback` called with null.
  void add(Requests requests, ErrorCallback callback) {
    {
      const std::scoped_lock lock(mutex_);
      waiting_.push_back({std::move(requests), std::move(callback)});
      if (waiting_.size() > 1) return;
    }
    begin();
  }

 private:
  struct Replacement {
    Requests requests;
    ErrorCallback callback;
  };

  void begin() {
    services().userNotifications->getPendingNotificationRequests(
        [self = shared_from_this()](const auto& pending) { self->replace(pending); });
  }

  void replace(const Requests& pending) {
    removeOwn(pending);
    // It stays in the queue meanwhile, so that nobody else begins.
    const Replacement& first = front();
    for (const UserNotificationRequest& request : first.requests) arm(request);
    if (first.callback) first.callback(nullptr);
    if (!endFirst()) begin();
  }

  const Replacement& front() {
    const std::scoped_lock lock(mutex_);
    return waiting_.front();
  }

  /// Whether that was the last one.
  bool endFirst() {
    // What the callback holds goes outside of the lock.
    Replacement first;
    const std::scoped_lock lock(mutex_);
    first = std::move(waiting_.front());
    waiting_.pop_front();
    return waiting_.empty();
  }

  std::mutex mutex_;
  /// The first is under way. Adding to a deque moves none of its entries.
  std::deque<Replacement> waiting_;
};

NotifyManager::NotifyManager()
    : replacements_(OvintaState::current()
                        .notificationReplacements
                        .get([] { return std::make_shared<NotificationReplacements>(); })
                        .shared_from_this()) {}

void NotifyManager::createForSites(const SiteList& sites, const NotificationInfo& notification,
                                   ErrorCallback callback) {
  const SiteList usable = withoutNulls(sites);
  ErrorPtr error = permissionError();
  if (!error && usable.size() > kMaxNumberOfSites) {
    error = std::make_shared<const NotifyManagerError>(
        NotifyManagerErrorType::reachedTheMaxNumberOfSites);
  }
  if (error) {
    if (callback) callback(error);
    return;
  }
  Requests requests;
  for (const SitePtr& site : usable) {
    if (auto request = makeRequest(*site, notification)) requests.push_back(*std::move(request));
  }
  replacements_->add(std::move(requests), std::move(callback));
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

void NotifyManager::clear(ErrorCallback callback) { replacements_->add({}, std::move(callback)); }

bool NotifyManager::isOvintaNotifyUserInfo(const platform::Dictionary& userInfo) const {
  return isOwn(userInfo);
}

}  // namespace ovinta
