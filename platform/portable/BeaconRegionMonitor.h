#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::portable {

/// Judges in which regions the device is: inside from the first beacon of the region that is heard,
/// outside again after `kSilence` seconds without one. What it returns is what has changed.
class BeaconRegionMonitor {
 public:
  static constexpr int kSilence = 30;

  /// Replaces a region of the same identifier, of which nothing is known then; an equal one stays.
  void start(const BeaconRegion& region) {
    if (contains(region)) return;
    stop(region.identifier);
    states_.push_back({region});
  }

  void stop(const std::string& identifier) {
    std::erase_if(states_,
                  [&](const State& state) { return state.region.identifier == identifier; });
  }

  bool contains(const BeaconRegion& region) const {
    return std::ranges::find(states_, region, &State::region) != states_.end();
  }

  bool isEmpty() const { return states_.empty(); }

  /// Whether `passSecond` has anything to count.
  bool isInsideAny() const {
    return std::ranges::any_of(states_, [](const State& state) { return state.secondsLeft > 0; });
  }

  /// Takes in a beacon that was heard, and gives the regions that the device has entered by it.
  std::vector<BeaconRegion> hear(const RangedBeacon& beacon) {
    std::vector<BeaconRegion> entered;
    for (State& state : states_) {
      if (!covers(state.region, beacon)) continue;
      // There is one second more, because the present one has begun before.
      if (std::exchange(state.secondsLeft, kSilence + 1) == 0) entered.push_back(state.region);
    }
    return entered;
  }

  /// Counts a second, and gives the regions that the device has left by it. To be called once a
  /// second.
  std::vector<BeaconRegion> passSecond() {
    std::vector<BeaconRegion> left;
    for (State& state : states_) {
      if (state.secondsLeft > 0 && --state.secondsLeft == 0) left.push_back(state.region);
    }
    return left;
  }

 private:
  struct State {
    BeaconRegion region;
    /// Seconds that are left until the device counts as outside; zero when it does.
    int secondsLeft = 0;
  };

  std::vector<State> states_;
};

}  // namespace ovinta::platform::portable
