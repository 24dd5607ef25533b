#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "../../Location.h"
#include "../../MainQueue.h"
#include "../../UserNotificationCenter.h"

namespace ovinta::platform::portable {
enum class RegionSide;
}

namespace ovinta::platform::simulation {

/// A notification centre that shows nothing and records what fires. What a call asks for is done
/// when it returns; its completion comes through the main queue. May be used from any thread, save
/// `deviceMoved`, which belongs to the main thread.
class SimulatedUserNotificationCenter : public UserNotificationCenter {
 public:
  /// `geodesy` tells how far positions are from a region's centre.
  SimulatedUserNotificationCenter(std::shared_ptr<MainQueue> mainQueue,
                                  std::shared_ptr<Geodesy> geodesy);

  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override;
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override;
  void add(UserNotificationRequest request,
           std::function<void(std::optional<UserNotificationError>)> completion) override;

  /// Fires the pending requests whose region the device has entered, or left, with this move, if
  /// their region asks for it. A fix whose circle of uncertainty touches the border moves nothing.
  void deviceMoved(const Location& fix);

  /// Has `observer` called with each request that fires, inside `deviceMoved`.
  void onFired(std::function<void(const UserNotificationRequest&)> observer);

  /// Has every later `add` fail with the error, which changes nothing; absent to accept again.
  void refuseAdds(std::optional<UserNotificationError> error);

  /// The requests that wait, in the order of their adding.
  std::vector<UserNotificationRequest> pending() const;
  /// Every request that has fired, in order, once for each time.
  std::vector<UserNotificationRequest> fired() const;

 private:
  struct Pending {
    UserNotificationRequest request;
    /// The last one that was certain.
    portable::RegionSide side;
  };

  portable::RegionSide sideOf(const CircularRegion& region) const;
  std::vector<UserNotificationRequest> takeFiring(const Location& fix);

  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<Geodesy> geodesy_;
  mutable std::mutex mutex_;
  std::vector<Pending> pending_;
  std::vector<UserNotificationRequest> fired_;
  std::optional<Location> lastFix_;
  std::optional<UserNotificationError> refusal_;
  std::function<void(const UserNotificationRequest&)> observer_;
};

}  // namespace ovinta::platform::simulation
