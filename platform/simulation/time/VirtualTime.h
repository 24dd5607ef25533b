#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include "../../Clock.h"
#include "../../MainQueue.h"
#include "TimeHold.h"

namespace ovinta::platform::simulation {

/// A clock and a main queue that move together, and only when told. The thread that makes it is the
/// main thread; the methods that run tasks may be called on that thread only, and not from inside a
/// task (both are fatal errors). Destroying it drops the tasks that still wait; clock and queue may
/// outlive it, but the queue then drops what it is given.
class VirtualTime {
 public:
  /// Time stands at `start`.
  explicit VirtualTime(Date start);
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;
  ~VirtualTime();

  /// The clock and the queue, never null, for the services.
  std::shared_ptr<Clock> clock() const;
  std::shared_ptr<MainQueue> mainQueue() const;

  /// The instant at which time stands. May be called from any thread.
  Date now() const;

  /// Runs everything that falls due within the interval, each task at its own due time, and then
  /// stands at the end of the interval. While a hold lives it goes no further than the present
  /// instant: it runs what is due, waits for the hold's release and runs what other threads submit
  /// meanwhile. An interval below zero counts as zero. `abandon`, where given, is looked at every
  /// few milliseconds of such waiting, on this thread: true ends the call at the present instant.
  void advance(TimeInterval interval, const std::function<bool()>& abandon = {});

  /// Runs the tasks that are due now, also those that they submit; time does not move, and holds
  /// are not waited for.
  void runUntilIdle();

  /// Runs the tasks that are due now, and those that other threads submit, until the condition
  /// holds; true when it did within `wallLimit`. Time does not move. The condition is looked at on
  /// this thread whenever nothing is due: at first, after each task and each piece of work of a
  /// hold, and every few milliseconds.
  bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds wallLimit);

  /// Stops time until the result, and every other hold, is gone. May be called from any thread.
  [[nodiscard]] std::unique_ptr<TimeHold> hold();

  /// A function that does the same as `hold`, on any thread; it may outlive this object.
  std::function<std::unique_ptr<TimeHold>()> holdMaker() const;

  /// How many tasks wait, due now or later. May be called from any thread.
  std::size_t pendingTaskCount() const;

 private:
  std::shared_ptr<VirtualTimeState> state_;
};

}  // namespace ovinta::platform::simulation
