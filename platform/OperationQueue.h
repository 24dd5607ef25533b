#pragma once

#include <cstddef>
#include <memory>

namespace ovinta::platform {

/// A unit of work for an operation queue.
class Operation {
 public:
  virtual ~Operation() = default;

  /// Does the work. Called once, on a thread of the queue; the operation has finished when it
  /// returns. Must not throw.
  virtual void main() = 0;
};

/// Runs operations on background threads, started in the order in which they were added. May be
/// used from any thread.
class OperationQueue {
 public:
  /// Stands for as many operations at once as the implementation finds fit for the machine.
  static constexpr std::size_t kDefaultMaxConcurrentOperationCount = 0;

  virtual ~OperationQueue() = default;

  /// Queues `operation` and returns at once; the queue keeps it until `main()` has returned. May be
  /// called from inside an operation. When the process exits, operations that still wait are
  /// dropped and those that run may have a moment to end.
  virtual void addOperation(std::shared_ptr<Operation> operation) = 0;

  /// Limits how many operations run at the same time; those already running are not stopped.
  virtual void setMaxConcurrentOperationCount(std::size_t count) = 0;
  /// The limit that was set last; the default at first.
  virtual std::size_t maxConcurrentOperationCount() const = 0;
};

/// Makes operation queues. May be used from any thread.
class OperationQueueFactory {
 public:
  virtual ~OperationQueueFactory() = default;

  /// A new, empty queue of default concurrency, never null. Dropping the last reference drops the
  /// operations that still wait and returns without waiting for running ones.
  virtual std::shared_ptr<OperationQueue> makeQueue() = 0;
};

}  // namespace ovinta::platform
