#include "platform/linux/bluez/BeaconRegionMonitor.h"

#include <algorithm>
#include <utility>

#include "platform/standard/BeaconRules.h"

namespace ovinta::platform::linux {

void BeaconRegionMonitor::start(const BeaconRegion& region) {
  if (std::ranges::find(states_, region, &State::region) != states_.end()) return;
  stop(region.identifier);
  states_.push_back({region});
}

void BeaconRegionMonitor::stop(const std::string& identifier) {
  std::erase_if(states_, [&](const State& state) { return state.region.identifier == identifier; });
}

std::vector<BeaconRegion> BeaconRegionMonitor::regions() const {
  std::vector<BeaconRegion> regions;
  for (const State& state : states_) regions.push_back(state.region);
  return regions;
}

bool BeaconRegionMonitor::isInsideAny() const {
  return std::ranges::any_of(states_, [](const State& state) { return state.secondsLeft > 0; });
}

std::vector<BeaconRegion> BeaconRegionMonitor::hear(const IBeacon& beacon) {
  std::vector<BeaconRegion> entered;
  const RangedBeacon heard{beacon.proximityUUID, beacon.major, beacon.minor};
  for (State& state : states_) {
    if (!standard::covers(state.region, heard)) continue;
    // The present second has begun before.
    if (std::exchange(state.secondsLeft, kSilence + 1) == 0) entered.push_back(state.region);
  }
  return entered;
}

std::vector<BeaconRegion> BeaconRegionMonitor::passSecond() {
  std::vector<BeaconRegion> left;
  for (State& state : states_) {
    if (state.secondsLeft > 0 && --state.secondsLeft == 0) left.push_back(state.region);
  }
  return left;
}

}  // namespace ovinta::platform::linux
