#pragma once

#include <memory>

#include "platform/MainQueue.h"
#include "platform/OperationQueue.h"

namespace ovinta::platform::simulation {

/// Makes queues whose operations run as tasks of the main queue, in the order in which they were
/// added: whoever drives the queue drives them all.
std::shared_ptr<OperationQueueFactory> makeMainQueueOperations(
    std::shared_ptr<MainQueue> mainQueue);

}  // namespace ovinta::platform::simulation
