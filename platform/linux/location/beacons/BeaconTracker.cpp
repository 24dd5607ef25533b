#include "platform/linux/location/beacons/BeaconTracker.h"

#include <algorithm>
#include <utility>

#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr TimeInterval kSecond = std::chrono::seconds(1);

}  // namespace

BeaconTracker::BeaconTracker(std::shared_ptr<BeaconScanner> scanner, RangingHandler onRanged)
    : scanner_(std::move(scanner)),
      onRanged_(std::make_shared<const RangingHandler>(std::move(onRanged))) {}

BeaconTracker::~BeaconTracker() {
  if (isListening_) scanner_->remove(*this);
}

void BeaconTracker::setEnabled(bool enabled) {
  if (std::exchange(isEnabled_, enabled) != enabled) updateSoon();
}

void BeaconTracker::startRanging(const IdentifiedBeaconRegion& region) {
  if (std::ranges::find(ranged_, region) == ranged_.end()) ranged_.push_back(region);
  updateSoon();
}

void BeaconTracker::stopRanging(const IdentifiedBeaconRegion& region) {
  std::erase(ranged_, region);
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
  const bool listens = isEnabled_ && !ranged_.empty();
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
  if (isTickScheduled_ || !isEnabled_ || ranged_.empty()) return;
  isTickScheduled_ = true;
  later(kSecond, &BeaconTracker::tick);
}

void BeaconTracker::tick() {
  isTickScheduled_ = false;
  if (!isEnabled_) return;
  scheduleTick();
  reportRanging();
}

void BeaconTracker::reportRanging() {
  const auto onRanged = onRanged_;
  const auto life = lifetime_.watch();
  const auto beacons = collector_.take(scanner_->pathLossExponent());
  // A copy is walked, because a handler may change what is ranged.
  for (const IdentifiedBeaconRegion& region : std::vector(ranged_)) {
    if (std::ranges::find(ranged_, region) == ranged_.end()) continue;
    std::vector<RangedBeacon> heard;
    std::ranges::copy_if(beacons, std::back_inserter(heard), [&](const RangedBeacon& beacon) {
      return portable::covers(region, beacon);
    });
    (*onRanged)(heard, region);
    if (life.expired()) return;
  }
}

void BeaconTracker::hear(const BeaconSighting& sighting) {
  // While nothing is ranged, nobody would take what the collector gathers.
  if (isEnabled_ && !ranged_.empty()) collector_.add(sighting);
}

}  // namespace ovinta::platform::linuxos
