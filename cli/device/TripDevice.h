#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "cli/client/ObservedURLSession.h"
#include "cli/device/ObservedLocationServices.h"
#include "platform/simulation/Simulation.h"

namespace ovinta::cli {

/// How long the service may keep a device waiting, by the wall clock.
inline constexpr std::chrono::seconds kPatience{20};

/// A device on a trip: simulated time, position, battery and notification centre; everything else,
/// HTTP above all, as the base has it. Made, it is what the library runs on, and the calling thread
/// is the main one.
class TripDevice {
 public:
  /// `observer` is called in turn with the main thread, for as long as the device lives. Without
  /// options of delivery there is none.
  TripDevice(platform::Services base, platform::Date start, ObservedURLSession::Observer observer,
             const std::optional<platform::DeliveryOptions>& delivery = {});
  ~TripDevice();
  TripDevice(const TripDevice&) = delete;
  TripDevice& operator=(const TripDevice&) = delete;

  platform::simulation::Simulation& simulation() { return simulation_; }
  platform::simulation::VirtualTime& time() { return simulation_.time(); }

  /// What the library asks of the simulated location services.
  ObservedLocationServices& location() { return *location_; }

 private:
  platform::simulation::Simulation simulation_;
  std::shared_ptr<ObservedURLSession> session_;
  std::shared_ptr<ObservedLocationServices> location_;
};

}  // namespace ovinta::cli
