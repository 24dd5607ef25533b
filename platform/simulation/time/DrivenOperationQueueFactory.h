#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "../../OperationQueue.h"

namespace ovinta::platform::simulation {

/// Makes queues without threads: their operations run inside `runAll`, on the thread that calls it.
/// May be used from any thread.
class DrivenOperationQueueFactory : public OperationQueueFactory {
 public:
  /// A factory without queues.
  DrivenOperationQueueFactory();

  std::shared_ptr<OperationQueue> makeQueue() override;

  /// Runs the waiting operations of all queues, one at a time in the order in which they were
  /// added, also those added meanwhile, until none is left. Returns how many it ran.
  std::size_t runAll();

  /// How many operations wait.
  std::size_t waitingCount() const;

  /// The queues made so far that still exist, in the order of their making; each knows the
  /// `maxConcurrentOperationCount` it was given.
  std::vector<std::shared_ptr<OperationQueue>> queues() const;

 private:
  class State;
  class Queue;
  std::shared_ptr<State> state_;
};

}  // namespace ovinta::platform::simulation
