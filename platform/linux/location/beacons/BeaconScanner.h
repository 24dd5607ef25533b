#pragma once

#include <memory>
#include <vector>

#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/linux/dbus/Bus.h"
#include "platform/linux/location/beacons/IBeacon.h"
#include "platform/portable/BeaconRules.h"

namespace ovinta::platform::linuxos {

class BeaconListener {
 public:
  virtual ~BeaconListener() = default;
  /// Told of each sighting of a beacon. May remove and destroy listeners.
  virtual void hear(const BeaconSighting& sighting) = 0;
};

/// Hears the beacons around through all powered adapters of BlueZ, while somebody listens, and
/// leaves the bus alone otherwise. Adapters that come, go, or are switched off and on, and a BlueZ
/// that is restarted, are followed; one that does not run is waited for, not started, since the
/// user may have ended it. Main thread only, which also calls the listeners.
class BeaconScanner {
 public:
  struct Options {
    /// How fast the strength of a beacon falls with the distance; see `pathLossDistance`.
    double pathLossExponent = portable::kFreeSpaceExponent;
    /// The time from a refusal by BlueZ, or by the bus, to the next attempt.
    TimeInterval retryInterval = std::chrono::seconds(5);
  };

  BeaconScanner(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
                std::shared_ptr<Log> log, const Options& options);
  BeaconScanner(const BeaconScanner&) = delete;
  BeaconScanner& operator=(const BeaconScanner&) = delete;
  ~BeaconScanner();

  /// Adds a listener, which is not owned and must be removed before it is destroyed.
  void add(BeaconListener& listener);
  void remove(BeaconListener& listener);

  double pathLossExponent() const { return options_.pathLossExponent; }
  const std::shared_ptr<MainQueue>& mainQueue() const { return mainQueue_; }

 private:
  class Scan;

  void pass(const BeaconSighting& sighting);
  void noteRefusal(const dbus::Failure& failure);

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<Log> log_;
  const Options options_;
  bool hasLoggedRefusal_ = false;
  std::vector<BeaconListener*> listeners_;
  /// The scan under way; null while nobody listens.
  std::unique_ptr<Scan> scan_;
};

}  // namespace ovinta::platform::linuxos
