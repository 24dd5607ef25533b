#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "platform/linux/notifications/NotificationPresenter.h"
#include "platform/linux/notifications/NotificationStoreQueue.h"

namespace ovinta::platform::linuxos {

/// Shows the requests of one store when the device crosses the border of their region. Follows the
/// position just while something is pending. Main thread only, save its making and `review`.
class NotificationTrigger : public LocationManagerDelegate,
                            public std::enable_shared_from_this<NotificationTrigger> {
 public:
  struct Handlers {
    /// Told of the user info of a notification that the user has clicked.
    std::function<void(const Dictionary&)> onClick = {};
    /// Told whether something is pending when a review has ended. There is one by itself after
    /// something was to be shown, when somebody else has shown or removed the last request, and
    /// when nothing that was shown can be clicked any more, after what `onClick` has given the
    /// store to do.
    std::function<void(bool isArmed)> onReviewed = {};
  };

  /// The trigger uses main queue, location, geodesy and log of the services. Handlers may not
  /// destroy it.
  NotificationTrigger(const Services& services, std::shared_ptr<dbus::Bus> sessionBus,
                      std::string applicationID, std::shared_ptr<NotificationStoreQueue> store,
                      Handlers handlers);

  /// Looks for what is pending, after all steps that the store has been given so far. To be called
  /// whenever that may have changed. In a store that cannot be read nothing is. May be called from
  /// any thread.
  void review();

  /// Whether it may follow the position; at first it may not.
  void setFollowing(bool follows);

  /// Whether something was pending when it was looked at last.
  bool isArmed() const { return isArmed_; }
  /// Whether it is showing something, or has shown what may still be clicked.
  bool isShowing() const { return showing_ > 0 || presenter_.hasOpen(); }

  void didUpdateLocations(const std::vector<Location>& locations) override;
  void didChangeAuthorizationStatus(AuthorizationStatus status) override;
  void didRangeBeacons(const std::vector<RangedBeacon>&, const IdentifiedBeaconRegion&) override {}

 private:
  void noteArmed(bool isArmed);
  void followAsNeeded();
  void judge(const Location& fix);
  void noteJudged(bool isArmed);
  void show(const std::vector<NotificationStore::Firing>& firing);

  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<LocationServices> location_;
  const std::shared_ptr<Geodesy> geodesy_;
  const std::shared_ptr<NotificationStoreQueue> store_;
  const Handlers handlers_;
  bool isArmed_ = false;
  bool mayFollow_ = false;
  std::size_t showing_ = 0;
  /// The last position that the location manager has told; absent before the first.
  std::optional<Location> lastFix_;
  NotificationPresenter presenter_;
  std::unique_ptr<LocationManager> manager_;
};

}  // namespace ovinta::platform::linuxos
