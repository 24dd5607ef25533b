#pragma once

#include <functional>
#include <memory>

#include "platform/Services.h"
#include "platform/simulation/http/HoldingURLSession.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/location/SimulatedUserNotificationCenter.h"
#include "platform/simulation/time/DrivenOperationQueueFactory.h"
#include "platform/simulation/time/VirtualTime.h"

namespace ovinta::fuzz {

/// Keeps each request until it is told to answer it; forgets them when it starts anew.
class Requests : public platform::URLSession {
 public:
  void startDataTask(platform::URLRequest request, Completion completion) override;

  /// Gives the one started first, or last, of those that wait the answer that the function makes;
  /// false, and no answer is made, when none waits.
  bool answerFirst(const std::function<platform::simulation::Answer()>& makeAnswer);
  bool answerLast(const std::function<platform::simulation::Answer()>& makeAnswer);

  void startAnew();

 private:
  std::shared_ptr<platform::simulation::HoldingURLSession> held_ =
      std::make_shared<platform::simulation::HoldingURLSession>();
  std::size_t started_ = 0;
};

/// What the library runs on in a fuzzer: nothing leaves the memory, nothing happens by itself.
/// Order store and log keep nothing, the settings until the process ends. The device stands 5 hours
/// west of Greenwich.
class Platform {
 public:
  /// The one of the process; installed, and the library configured, when it is first asked for.
  static Platform& shared();

  /// Answers each request, and runs operations and tasks that are due, until nothing is
  /// left to do. Time does not move.
  void drain(const std::function<platform::simulation::Answer()>& makeAnswer);

  /// Has the library forget customer, orders, sites and what it asked for; drops what waits.
  void reset();

  platform::simulation::VirtualTime time;
  const std::shared_ptr<Requests> requests = std::make_shared<Requests>();
  const std::shared_ptr<platform::simulation::DrivenOperationQueueFactory> queues;
  const std::shared_ptr<platform::simulation::SimulatedLocation> location;
  const std::shared_ptr<platform::simulation::SimulatedUserNotificationCenter> notifications;

 private:
  Platform();
  explicit Platform(const platform::Services& values);
};

}  // namespace ovinta::fuzz
