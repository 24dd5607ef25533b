#pragma once

#include <chrono>
#include <memory>

#include "cli/demo/DemoDevice.h"
#include "platform/Services.h"
#include "platform/portable/Lifetime.h"
#include "platform/simulation/trip/TripPath.h"
#include "replay/Rig.h"

namespace ovinta::cli {

/// This machine with its real services, in real time; only that the position, which comes from the
/// real GeoClue, is that of the trip. What else the trip tells of, beacons, battery and permission,
/// is left to the services.
class LinuxDemoDevice : public DemoDevice {
 public:
  /// As `makeDemoDevice` has them. Throws `std::runtime_error` where GeoClue cannot be run.
  LinuxDemoDevice(const DemoOptions& options, platform::simulation::Trip trip,
                  Interruption& interruption, ObservedURLSession::Observer observer);
  ~LinuxDemoDevice() override;

  platform::Date now() override { return platform::services().clock->now(); }
  void askPermission() override;
  void passSecond() override;
  bool waitUntil(const std::function<bool()>& condition) override;
  void startTrip() override { isOnTrip_ = true; }
  bool isTripOver() const override { return passed_ >= path_.duration(); }
  std::optional<platform::Coordinate> position() const override;
  ObservedLocationServices& location() override { return *location_; }

 private:
  using WallClock = std::chrono::steady_clock;

  /// Runs the main loop until the condition holds, if that is before the limit.
  bool serve(const std::function<bool()>& condition, WallClock::time_point limit);
  /// Tells GeoClue of the position, again and again.
  void tellPosition();

  Interruption& interruption_;
  const std::unique_ptr<replay::Rig> rig_;
  const platform::Services base_;
  std::shared_ptr<ObservedURLSession> session_;
  std::shared_ptr<ObservedLocationServices> location_;
  const platform::simulation::TripPath path_;
  /// How long a second of the trip lasts by the wall clock.
  const std::chrono::duration<double> second_;
  bool isOnTrip_ = false;
  /// How much of the trip has passed.
  platform::TimeInterval passed_{};
  const platform::portable::Lifetime lifetime_;
};

}  // namespace ovinta::cli
