#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "OvintaSDK/core/Context.h"
#include "OvintaSDK/sites/NotifyManager.h"
#include "platform/UserNotificationCenter.h"

namespace ovinta {

class Sites;

/// The notifications about sites that a platform's notification centre holds, for all managers that
/// arm them there. What is armed is replaced by one call at a time, in the order of the calls: one
/// that looked for what is pending while another still arms its requests would miss them.
class SiteNotifications : public std::enable_shared_from_this<SiteNotifications> {
 public:
  /// `sites` is asked when sites are to be looked up.
  SiteNotifications(ContextPtr context, std::function<std::shared_ptr<Sites>()> sites)
      : context_(std::move(context)), sites_(std::move(sites)) {}

  void createForSites(const SiteList& sites, const NotificationInfo& notification,
                      ErrorCallback callback);
  void createForSitesInRegion(const platform::CircularRegion& region,
                              const NotificationInfo& notification, SitesCallback callback);
  void clear(ErrorCallback callback) { replace({}, std::move(callback)); }

  static bool isOwn(const platform::Dictionary& userInfo);

 private:
  using Requests = std::vector<platform::UserNotificationRequest>;
  struct Replacement {
    Requests requests;
    ErrorCallback callback;
  };

  /// Has the requests armed in place of all of the library's own, and `callback` called with null.
  void replace(Requests requests, ErrorCallback callback);
  void begin();
  void replaceAll(const Requests& pending);
  void arm(const platform::UserNotificationRequest& request);
  const Replacement& front();
  /// Takes the replacement that is done off the queue, and tells whether it was the last one.
  bool endFirst();

  const ContextPtr context_;
  const std::function<std::shared_ptr<Sites>()> sites_;
  std::mutex mutex_;
  /// The replacements that are asked for, of which the first is under way. Adding to a deque moves
  /// none of its entries, so that a reference to the first one stays valid.
  std::deque<Replacement> waiting_;
};

}  // namespace ovinta
