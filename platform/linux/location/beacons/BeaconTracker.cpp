#include "platform/linux/location/beacons/BeaconTracker.h"

#include <algorithm>
#include <utility>

#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr TimeInterval kSecond = std::chrono::seconds(1);

}  // namespace

BeaconTracker::BeaconTracker(std::shared_ptr<BeaconScanner> scanner, BeaconHandlers handlers)
    : scanner_(std::move(scanner)),
      handlers_(std::make_shared<const BeaconHandlers>(std::move(handlers))) {}

BeaconTracker::~BeaconTracker() {
  if (isListening_) scanner_->remove(*this);
}

void BeaconTracker::setEnabled(bool enabled) {
  if (std::exchange(isEnabled_, enabled) != enabled) updateSoon();
}

void BeaconTracker::startRanging(const BeaconRegion& region) {
  if (std::ranges::find(ranged_, region) == ranged_.end()) ranged_.push_back(region);
  updateSoon();
}

void BeaconTracker::stopRanging(const BeaconRegion& region) {
  std::erase(ranged_, region);
  updateSoon();
}

void BeaconTracker::startMonitoring(const BeaconRegion& region) {
  monitor_.start(region);
  updateSoon();
}

void BeaconTracker::stopMonitoring(const std::string& identifier) {
  monitor_.stop(identifier);
  updateSoon();
}

void BeaconTracker::later(TimeInterval delay, void (BeaconTracker::*step)()) {
  scanner_->mainQueue()->asyncAfter(delay, lifetime_.guard([this, step] { (this->*step)(); }));
}

/// Has the tracker listen or rest, as its regions demand, soon but not at once: who stops all
/// regions and starts them again does not mean the adapter to rest.
void BeaconTracker::updateSoon() {
  if (!std::exchange(isUpdateScheduled_, true)) later(TimeInterval::zero(), &BeaconTracker::update);
}

void BeaconTracker::update() {
  isUpdateScheduled_ = false;
  const bool listens = isEnabled_ && !(ranged_.empty() && monitor_.isEmpty());
  if (std::exchange(isListening_, listens) != listens) {
    if (listens) {
      scanner_->add(*this);
    } else {
      scanner_->remove(*this);
    }
  }
  if (!isEnabled_) collector_ = {};
  scheduleTick();
}

void BeaconTracker::scheduleTick() {
  if (isTickScheduled_ || !isEnabled_ || (ranged_.empty() && !monitor_.isInsideAny())) return;
  isTickScheduled_ = true;
  later(kSecond, &BeaconTracker::tick);
}

void BeaconTracker::tick() {
  isTickScheduled_ = false;
  if (!isEnabled_) return;
  const auto left = monitor_.passSecond();
  scheduleTick();
  const auto life = lifetime_.watch();
  reportRanging();
  if (!life.expired()) reportCrossings(left, portable::RegionEvent::left);
}

void BeaconTracker::reportRanging() {
  const auto handlers = handlers_;
  const auto life = lifetime_.watch();
  const auto beacons = collector_.take(scanner_->pathLossExponent());
  // A copy is walked, because a handler may change what is ranged.
  for (const BeaconRegion& region : std::vector(ranged_)) {
    if (std::ranges::find(ranged_, region) == ranged_.end()) continue;
    std::vector<RangedBeacon> heard;
    std::ranges::copy_if(beacons, std::back_inserter(heard), [&](const RangedBeacon& beacon) {
      return portable::covers(region, beacon);
    });
    handlers->onRanged(heard, region);
    if (life.expired()) return;
  }
}

void BeaconTracker::reportCrossings(const std::vector<BeaconRegion>& regions,
                                    portable::RegionEvent event) {
  const auto handlers = handlers_;
  const auto life = lifetime_.watch();
  for (const BeaconRegion& region : regions) {
    // A handler may have stopped this region since.
    if (!monitor_.contains(region)) continue;
    handlers->onCrossed(region, event);
    if (life.expired()) return;
  }
}

void BeaconTracker::hear(const BeaconSighting& sighting) {
  if (!isEnabled_) return;
  // While nothing is ranged, nobody would take what the collector gathers.
  if (!ranged_.empty()) collector_.add(sighting);
  const IBeacon& beacon = sighting.beacon;
  const auto entered = monitor_.hear({beacon.proximityUUID, beacon.major, beacon.minor});
  scheduleTick();
  reportCrossings(entered, portable::RegionEvent::entered);
}

}  // namespace ovinta::platform::linuxos
