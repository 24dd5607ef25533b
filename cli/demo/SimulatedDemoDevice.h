#pragma once

#include <chrono>

#include "cli/demo/DemoDevice.h"
#include "cli/device/TripDevice.h"
#include "platform/simulation/trip/TripPlayer.h"

namespace ovinta::cli {

/// A simulated device, in virtual time.
class SimulatedDemoDevice : public DemoDevice {
 public:
  /// As `makeDemoDevice` has them.
  SimulatedDemoDevice(const DemoOptions& options, platform::simulation::Trip trip,
                      Interruption& interruption, ObservedURLSession::Observer observer);

  platform::Date now() override { return device_.time().now(); }
  /// Nothing to do: a simulated device has the permission from the start.
  void askPermission() override {}
  void passSecond() override;
  bool waitUntil(const std::function<bool()>& condition) override;
  void startTrip() override { player_.start(); }
  bool isTripOver() const override { return player_.isFinished(); }
  std::optional<platform::Coordinate> position() const override { return player_.position(); }
  ObservedLocationServices& location() override { return device_.location(); }

 private:
  Interruption& interruption_;
  TripDevice device_;
  platform::simulation::TripPlayer player_;
  /// How long a second of the trip lasts by the wall clock.
  const std::chrono::duration<double> second_;
};

}  // namespace ovinta::cli
