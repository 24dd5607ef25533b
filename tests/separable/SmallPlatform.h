#pragma once

#include <memory>

#include "platform/simulation/Simulation.h"
#include "platform/simulation/http/AnsweringURLSession.h"
#include "platform/simulation/time/DrivenOperationQueueFactory.h"

namespace ovinta::test {

/// A platform whose values are of ASCII text and fixed dates, and whose device is simulated. Its
/// services are those in force in a program that is linked with it and installs none.
struct SmallPlatform {
  static SmallPlatform& ofProcess();

  SmallPlatform();

  /// Runs operations, answers requests and runs tasks of the main queue until nothing is left.
  void drain();
  /// The same after each second that passes.
  void advance(std::chrono::seconds interval);

  std::shared_ptr<platform::simulation::AnsweringURLSession> http;
  std::shared_ptr<platform::simulation::DrivenOperationQueueFactory> queues;
  platform::simulation::Simulation simulation;
};

}  // namespace ovinta::test
