#pragma once

#include <functional>
#include <memory>

#include "../../OperationQueue.h"
#include "VirtualTime.h"

namespace ovinta::platform::simulation {

/// Has virtual time stand still from the adding of an operation until its `main()` has returned.
/// Operations run in turn with the main thread (`TimeHold::runInTurn`), and those of a queue of
/// default concurrency one at a time: the same test gives the same steps in the same order. May be
/// used from any thread.
class TimeHoldingOperationQueueFactory : public OperationQueueFactory {
 public:
  /// `base`, which must not be null, makes the queues; `time` is the one that stands still.
  TimeHoldingOperationQueueFactory(std::shared_ptr<OperationQueueFactory> base,
                                   const VirtualTime& time)
      : base_(std::move(base)), makeHold_(time.holdMaker()) {}

  std::shared_ptr<OperationQueue> makeQueue() override;

 private:
  std::shared_ptr<OperationQueueFactory> base_;
  std::function<std::unique_ptr<TimeHold>()> makeHold_;
};

}  // namespace ovinta::platform::simulation
