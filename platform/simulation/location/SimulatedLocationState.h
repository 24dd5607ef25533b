#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/LocationManager.h"
#include "platform/MainQueue.h"

namespace ovinta::platform::simulation {

class SimulatedLocationManager;

/// What a `SimulatedLocation` and its managers share. Main thread only, save the atomic fields.
class SimulatedLocationState {
 public:
  SimulatedLocationState(std::shared_ptr<MainQueue> queue, std::shared_ptr<Geodesy> measure)
      : mainQueue(std::move(queue)), geodesy(std::move(measure)) {}

  /// Whether positions and beacons may be reported.
  bool isOpen() const {
    const AuthorizationStatus current = status;
    return servicesEnabled && (current == 3 || current == 4);
  }

  void notifySettingsChanged() const {
    if (settingsObserver) settingsObserver();
  }

  const std::shared_ptr<MainQueue> mainQueue;
  const std::shared_ptr<Geodesy> geodesy;
  std::atomic<AuthorizationStatus> status{3};
  std::atomic<bool> servicesEnabled{true};
  std::vector<RangedBeacon> beacons;
  /// The managers that live, in the order in which they were made.
  std::vector<SimulatedLocationManager*> managers;
  std::size_t distanceFilterChanges = 0;
  std::function<void(const Location&)> positionObserver;
  std::function<void()> settingsObserver;
};

}  // namespace ovinta::platform::simulation
