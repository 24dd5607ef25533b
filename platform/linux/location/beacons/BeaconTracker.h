#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/linux/location/beacons/BeaconCollector.h"
#include "platform/linux/location/beacons/BeaconScanner.h"
#include "platform/portable/BeaconRegionMonitor.h"
#include "platform/portable/Lifetime.h"
#include "platform/portable/RegionSide.h"

namespace ovinta::platform::linuxos {

/// What a tracker finds, on the main queue. A handler may change what is tracked, and may destroy
/// the tracker.
struct BeaconHandlers {
  /// Once a second for each ranged region, with the beacons heard since, possibly none.
  std::function<void(const std::vector<RangedBeacon>&, const BeaconRegion&)> onRanged;
  /// Told of each monitored region that the device has entered or left.
  std::function<void(const BeaconRegion&, portable::RegionEvent)> onCrossed;
};

/// Ranges and monitors beacon regions as `LocationManager` says. It listens while it is enabled and
/// has a region, and counts the seconds while it ranges or is inside a monitored region. Main
/// thread only.
class BeaconTracker : private BeaconListener {
 public:
  BeaconTracker(std::shared_ptr<BeaconScanner> scanner, BeaconHandlers handlers);
  BeaconTracker(const BeaconTracker&) = delete;
  BeaconTracker& operator=(const BeaconTracker&) = delete;
  ~BeaconTracker() override;

  /// Switches the tracker on or off; it is off at first. While it is off nothing is found, and a
  /// region that was entered stays so.
  void setEnabled(bool enabled);

  void startRanging(const BeaconRegion& region);
  void stopRanging(const BeaconRegion& region);
  const std::vector<BeaconRegion>& rangedRegions() const { return ranged_; }

  void startMonitoring(const BeaconRegion& region);
  void stopMonitoring(const std::string& identifier);

 private:
  void hear(const BeaconSighting& sighting) override;
  void updateSoon();
  void update();
  void scheduleTick();
  void tick();
  void reportCrossings(const std::vector<BeaconRegion>& regions, portable::RegionEvent event);
  void reportRanging();
  /// Has the main queue run `step`, unless the tracker is gone by then.
  void later(TimeInterval delay, void (BeaconTracker::*step)());

  const std::shared_ptr<BeaconScanner> scanner_;
  const std::shared_ptr<const BeaconHandlers> handlers_;
  bool isEnabled_ = false;
  bool isListening_ = false;
  bool isUpdateScheduled_ = false;
  bool isTickScheduled_ = false;
  std::vector<BeaconRegion> ranged_;
  BeaconCollector collector_;
  portable::BeaconRegionMonitor monitor_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos
