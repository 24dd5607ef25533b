#include "platform/simulation/location/SimulatedUserNotificationCenter.h"

#include <algorithm>
#include <utility>

#include "platform/portable/RegionSide.h"

namespace ovinta::platform::simulation {

SimulatedUserNotificationCenter::SimulatedUserNotificationCenter(
    std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Geodesy> geodesy)
    : mainQueue_(std::move(mainQueue)), geodesy_(std::move(geodesy)) {}

void SimulatedUserNotificationCenter::getPendingNotificationRequests(
    std::function<void(std::vector<UserNotificationRequest>)> completion) {
  mainQueue_->async([completion = std::move(completion), requests = pending()]() mutable {
    completion(std::move(requests));
  });
}

void SimulatedUserNotificationCenter::removePendingNotificationRequests(
    std::vector<std::string> identifiers) {
  const std::lock_guard lock(mutex_);
  std::erase_if(pending_, [&](const Pending& entry) {
    return std::ranges::find(identifiers, entry.request.identifier) != identifiers.end();
  });
}

void SimulatedUserNotificationCenter::add(
    UserNotificationRequest request,
    std::function<void(std::optional<UserNotificationError>)> completion) {
  std::optional<UserNotificationError> error;
  {
    const std::lock_guard lock(mutex_);
    error = refusal_;
    if (!error) {
      std::erase_if(pending_, [&](const Pending& entry) {
        return entry.request.identifier == request.identifier;
      });
      const auto side = sideOf(request.trigger.region);
      pending_.push_back({std::move(request), side});
    }
  }
  if (!completion) return;
  mainQueue_->async([completion = std::move(completion), error] { completion(error); });
}

portable::RegionSide SimulatedUserNotificationCenter::sideOf(const CircularRegion& region) const {
  return lastFix_ ? portable::sideOf(region, *lastFix_, *geodesy_) : portable::RegionSide::unknown;
}

std::vector<UserNotificationRequest> SimulatedUserNotificationCenter::takeFiring(
    const Location& fix) {
  std::vector<UserNotificationRequest> firing;
  lastFix_ = fix;
  std::erase_if(pending_, [&](Pending& entry) {
    const auto& region = entry.request.trigger.region;
    const auto now = sideOf(region);
    if (now == portable::RegionSide::unknown) return false;
    if (!portable::fires(region, std::exchange(entry.side, now), now)) return false;
    firing.push_back(entry.request);
    return !entry.request.trigger.repeats;
  });
  return firing;
}

void SimulatedUserNotificationCenter::deviceMoved(const Location& fix) {
  std::vector<UserNotificationRequest> firing;
  std::function<void(const UserNotificationRequest&)> observer;
  {
    const std::lock_guard lock(mutex_);
    firing = takeFiring(fix);
    fired_.insert(fired_.end(), firing.begin(), firing.end());
    observer = observer_;
  }
  if (!observer) return;
  for (const auto& request : firing) observer(request);
}

void SimulatedUserNotificationCenter::onFired(
    std::function<void(const UserNotificationRequest&)> observer) {
  const std::lock_guard lock(mutex_);
  observer_ = std::move(observer);
}

void SimulatedUserNotificationCenter::refuseAdds(std::optional<UserNotificationError> error) {
  const std::lock_guard lock(mutex_);
  refusal_ = std::move(error);
}

std::vector<UserNotificationRequest> SimulatedUserNotificationCenter::pending() const {
  const std::lock_guard lock(mutex_);
  std::vector<UserNotificationRequest> requests;
  for (const auto& entry : pending_) requests.push_back(entry.request);
  return requests;
}

std::vector<UserNotificationRequest> SimulatedUserNotificationCenter::fired() const {
  const std::lock_guard lock(mutex_);
  return fired_;
}

}  // namespace ovinta::platform::simulation
