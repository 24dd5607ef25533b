#include "platform/linux/notifications/NotificationTrigger.h"

#include <utility>

#include "platform/portable/RegionSide.h"

namespace ovinta::platform::linuxos {

NotificationTrigger::NotificationTrigger(const Services& services,
                                         std::shared_ptr<dbus::Bus> sessionBus,
                                         std::string applicationID,
                                         std::shared_ptr<NotificationStoreQueue> store,
                                         Handlers handlers)
    : mainQueue_(services.mainQueue),
      location_(services.location),
      geodesy_(services.geodesy),
      store_(std::move(store)),
      handlers_(std::move(handlers)),
      presenter_(std::move(sessionBus), services.log, std::move(applicationID),
                 {.onClick = handlers_.onClick, .onAllClosed = [this] { review(); }}) {}

void NotificationTrigger::review() {
  const auto isArmed = std::make_shared<bool>(false);
  store_->enqueue([isArmed](NotificationStore& store) { *isArmed = !store.pending().empty(); });
  // The answer is passed on in a step of its own, which runs also when the store cannot be read.
  store_->enqueue([isArmed, weak = weak_from_this(), queue = mainQueue_](NotificationStore&) {
    queue->async([weak, isArmed = *isArmed] {
      if (const auto self = weak.lock()) self->noteArmed(isArmed);
    });
  });
}

void NotificationTrigger::noteArmed(bool isArmed) {
  isArmed_ = isArmed;
  followAsNeeded();
  // A request that is new would otherwise wait for the next move to learn where the device is.
  if (lastFix_) judge(*lastFix_);
  if (handlers_.onReviewed) handlers_.onReviewed(isArmed_);
}

void NotificationTrigger::setFollowing(bool follows) {
  mayFollow_ = follows;
  followAsNeeded();
}

void NotificationTrigger::followAsNeeded() {
  const bool follows = isArmed_ && mayFollow_;
  if (follows == (manager_ != nullptr)) return;
  lastFix_.reset();
  manager_ = follows ? location_->makeLocationManager() : nullptr;
  if (!manager_) return;
  manager_->setDelegate(this);
  manager_->setAllowsBackgroundLocationUpdates(true);
  manager_->setDesiredAccuracy(LocationAccuracy::best);
  manager_->setDistanceFilter(portable::kRegionFilterMetres);
  manager_->startUpdatingLocation();
}

void NotificationTrigger::didUpdateLocations(const std::vector<Location>& locations) {
  for (const Location& fix : locations) judge(fix);
  if (!locations.empty()) lastFix_ = locations.back();
}

void NotificationTrigger::didChangeAuthorizationStatus(AuthorizationStatus status) {
  // Without the permission nobody sees where the device goes, so that the last fix means nothing.
  if (!isAuthorized(status)) lastFix_.reset();
}

void NotificationTrigger::judge(const Location& fix) {
  store_->enqueue([fix, weak = weak_from_this(), queue = mainQueue_,
                   geodesy = geodesy_](NotificationStore& store) {
    auto firing = store.cross(fix, *geodesy);
    const bool isArmed = !store.pending().empty();
    queue->async([weak, isArmed, firing = std::move(firing)] {
      const auto self = weak.lock();
      if (!self) return;
      self->show(firing);
      self->noteJudged(isArmed);
    });
  });
}

void NotificationTrigger::noteJudged(bool isArmed) {
  // While something is being shown nothing is noted, because a review follows that.
  if (isArmed_ && !isArmed && showing_ == 0) noteArmed(false);
}

void NotificationTrigger::show(const std::vector<NotificationStore::Firing>& firing) {
  for (const auto& one : firing) {
    ++showing_;
    presenter_.show(one.request.content, [this, one](bool isShown) {
      --showing_;
      store_->enqueue([one, isShown](NotificationStore& store) { store.settle(one, isShown); });
      review();
    });
  }
}

}  // namespace ovinta::platform::linuxos
