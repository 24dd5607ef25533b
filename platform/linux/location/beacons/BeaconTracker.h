#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/linux/location/beacons/BeaconCollector.h"
#include "platform/linux/location/beacons/BeaconScanner.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// Ranges beacon regions as `LocationManager` says. It listens and counts the seconds while it is
/// enabled and has a region. Main thread only.
class BeaconTracker : private BeaconListener {
 public:
  /// Told on the main queue once a second for each ranged region, with the beacons heard since,
  /// possibly none. It may change what is ranged, and may destroy the tracker.
  using RangingHandler =
      std::function<void(const std::vector<RangedBeacon>&, const IdentifiedBeaconRegion&)>;

  BeaconTracker(std::shared_ptr<BeaconScanner> scanner, RangingHandler onRanged);
  BeaconTracker(const BeaconTracker&) = delete;
  BeaconTracker& operator=(const BeaconTracker&) = delete;
  ~BeaconTracker() override;

  /// Switches the tracker on or off; it is off at first.
  void setEnabled(bool enabled);

  void startRanging(const IdentifiedBeaconRegion& region);
  void stopRanging(const IdentifiedBeaconRegion& region);
  const std::vector<IdentifiedBeaconRegion>& rangedRegions() const { return ranged_; }

 private:
  void hear(const BeaconSighting& sighting) override;
  void updateSoon();
  void update();
  void scheduleTick();
  void tick();
  void reportRanging();
  /// Has the main queue run `step`, unless the tracker is gone by then.
  void later(TimeInterval delay, void (BeaconTracker::*step)());

  const std::shared_ptr<BeaconScanner> scanner_;
  /// Shared, so that it outlives a tracker that it destroys.
  const std::shared_ptr<const RangingHandler> onRanged_;
  bool isEnabled_ = false;
  bool isListening_ = false;
  bool isUpdateScheduled_ = false;
  bool isTickScheduled_ = false;
  std::vector<IdentifiedBeaconRegion> ranged_;
  BeaconCollector collector_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
