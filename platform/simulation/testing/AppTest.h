#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "../../linux/Linux.h"
#include "../RecordingLog.h"
#include "../RecordingNotificationCenter.h"
#include "../SimulatedBundle.h"
#include "../Simulation.h"
#include "../trip/TripPlayer.h"
#include "Problem.h"
#include "SampleRecords.h"
#include "ScriptedService.h"

namespace ovinta::platform::simulation {

/// How a test case begins. A plain value.
struct AppTestOptions {
  /// The services that work on values alone; of the others only a log is used, where there is one:
  /// it gets the lines too.
  Services values = linuxos::makeValueServices();
  /// What the clock shows at first.
  Date start = kDefaultTripStart;
  /// Is told of each problem. Default: it is written to standard error.
  ProblemReporter onProblem = {};
};

/// One test case of an application: the library, just started, on a simulated device, with a
/// service that the case writes. Everything begins afresh with each of these objects, of which one
/// lives at a time: `Ovinta`'s managers, settings, orders, permission, position, time. Objects of
/// `Ovinta` from before, references to managers among them, belong to the case before. Nothing
/// happens by itself: operations, answers, timers and observers run on the main thread, which is
/// the one that makes the object, inside `settle`, `advance` and `travel`. What is under way when
/// the case ends is dropped: its callbacks are not called.
///
/// `Ovinta::configure` is left to the application. It uses the base URL of production, which the
/// service answers like any other. The application's version is 1.0, the device's permission
/// "always", its battery unplugged; it has no position.
///
/// Main thread only, save where the parts say more. Applications that test with GoogleTest derive
/// their fixtures from `AppTestCase`.
class AppTest {
 public:
  /// Starts the case.
  explicit AppTest(AppTestOptions options = {});
  AppTest(const AppTest&) = delete;
  AppTest& operator=(const AppTest&) = delete;
  /// Ends it as `finish` does. Destroy the application's objects before it.
  ~AppTest();

  /// What the service expects and answers, and what it was sent.
  ScriptedService& service() { return *service_; }

  /// Has a customer, as the service would send it, be the current one, as if the application had
  /// signed in on an earlier day. Without a token, a name or one of the vehicle's texts nobody is.
  void signIn(const Dictionary& customer = sampleCustomer());

  /// Runs everything that is due, and what comes of it, until nothing is left; time stands still.
  void settle() { time().runUntilIdle(); }
  /// Lets time pass, and runs everything that falls due, each at its time.
  void advance(TimeInterval interval) { time().advance(interval); }

  /// Begins a trip, in place of one that is under way; `advance` takes the device along it. The
  /// player belongs to the case. A trip without points is a fatal error.
  TripPlayer& setOff(Trip trip);
  /// Makes the whole trip. That of a file which is no GPX file is a problem, and none is made.
  void travel(Trip trip);
  void travel(const std::filesystem::path& gpxFile);

  /// The clock, and the parts of the device: permission, position and beacons; battery; local
  /// notifications, with those that have fired; the application's resources.
  VirtualTime& time() { return simulation_->time(); }
  SimulatedLocation& location() { return simulation_->location(); }
  SimulatedDevice& device() { return simulation_->device(); }
  SimulatedUserNotificationCenter& notifications() { return simulation_->notifications(); }
  SimulatedBundle& bundle() { return *bundle_; }

  /// What the library, and whoever else uses its notification centre, has posted since the process
  /// started, in that order; with a name what was posted under it.
  std::vector<Notification> posted() const { return posted_->posted(); }
  std::vector<Notification> posted(NotificationName name) const { return posted_->posted(name); }
  /// The lines of the log since the case began.
  std::vector<std::string> logLines() const { return log_->lines(); }

  /// Ends the application's process and starts another one, which finds the settings, the orders'
  /// store, the pending local notifications, permission, battery and time of the first. What is
  /// under way is dropped, a trip too; what the service expects stays. Destroy the application's
  /// objects before, and make new ones after. The parts above are new objects then.
  void relaunch();

  /// Ends the case: what the service expects and was not sent is a problem. True when there was no
  /// problem in all of the case.
  bool finish();

 private:
  void launch(Date now);
  void report(const Problem& problem);

  const ProblemReporter onProblem_;
  const std::shared_ptr<RecordingLog> log_;
  const std::shared_ptr<SimulatedBundle> bundle_;
  const std::shared_ptr<ScriptedService> service_;
  /// What outlasts a process of the application.
  Services kept_;
  std::unique_ptr<Simulation> simulation_;
  std::shared_ptr<RecordingNotificationCenter> posted_;
  std::unique_ptr<TripPlayer> player_;
  std::atomic<bool> hasProblem_ = false;
};

}  // namespace ovinta::platform::simulation
