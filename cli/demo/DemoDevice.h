#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "cli/client/ObservedURLSession.h"
#include "cli/demo/DemoOptions.h"
#include "cli/device/Interruption.h"
#include "cli/device/ObservedLocationServices.h"
#include "platform/Date.h"
#include "platform/simulation/trip/Trip.h"

namespace ovinta::cli {

/// The device of a demonstration: the library runs on it, on a thread that plays the main one, and
/// it goes on a trip. Once interrupted, what passes time returns at once. Used on that thread, save
/// where it says so.
class DemoDevice {
 public:
  DemoDevice() = default;
  virtual ~DemoDevice() = default;
  DemoDevice(const DemoDevice&) = delete;
  DemoDevice& operator=(const DemoDevice&) = delete;

  /// May be called from any thread.
  virtual platform::Date now() = 0;

  /// Asks for the permission to follow the position.
  virtual void askPermission() = 0;

  /// Lets a second of the trip pass, at the pace asked for.
  virtual void passSecond() = 0;

  /// Lets the main thread work until the condition holds, while the trip stands still; true when it
  /// did within `kPatience`.
  virtual bool waitUntil(const std::function<bool()>& condition) = 0;

  virtual void startTrip() = 0;
  virtual bool isTripOver() const = 0;
  /// Where the device really is; absent before the trip.
  virtual std::optional<platform::Coordinate> position() const = 0;

  /// What the library asks of the location services.
  virtual ObservedLocationServices& location() = 0;
};

/// How long a second of a trip takes on the wall clock.
inline std::chrono::duration<double> wallSecond(std::chrono::duration<double> pace,
                                                platform::TimeInterval duration) {
  const std::chrono::duration<double> seconds = duration;
  return pace / std::max(seconds.count(), 1.0);
}

/// The device that the options ask for, which must name a data directory. The trip must hold at
/// least one point, `interruption` must outlive the device, and `observer` is called for as long as
/// the device lives, on any thread. Throws `std::runtime_error` where it cannot be had.
std::unique_ptr<DemoDevice> makeDemoDevice(const DemoOptions& options,
                                           platform::simulation::Trip trip,
                                           Interruption& interruption,
                                           ObservedURLSession::Observer observer);

}  // namespace ovinta::cli
