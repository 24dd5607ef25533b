// Virtual time: the main queue, and the operation queues that keep time with it.
#include "platform/portable/Portable.h"
#include "platform/simulation/time/DrivenOperationQueueFactory.h"
#include "platform/simulation/time/TimeHoldingOperationQueueFactory.h"
#include "tests/platform/contract/MainQueueContract.h"
#include "tests/platform/contract/OperationQueueContract.h"

namespace ovinta::platform::contract {
namespace {

using namespace std::chrono_literals;

struct MainQueueRig : testing::Test {
  void advance(TimeInterval interval) { time_.advance(interval); }
  void runUntil(const std::function<bool()>& condition) {
    EXPECT_TRUE(time_.waitUntil(condition, 30s));
  }

  simulation::VirtualTime time_{Date(1'000'000s)};
  std::shared_ptr<MainQueue> queue_ = time_.mainQueue();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, MainQueueContract, MainQueueRig);

/// Whoever drives the queues is a thread of its own.
struct DrivenQueueRig : testing::Test {
  void work() {
    std::jthread([this] { factory_->runAll(); }).join();
  }

  std::shared_ptr<simulation::DrivenOperationQueueFactory> factory_ =
      std::make_shared<simulation::DrivenOperationQueueFactory>();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Driven, OperationQueueContract, DrivenQueueRig);

struct TimeHoldingQueueRig : testing::Test {
  void work() { time_.advance(0s); }

  simulation::VirtualTime time_{Date{}};
  std::shared_ptr<OperationQueueFactory> factory_ =
      std::make_shared<simulation::TimeHoldingOperationQueueFactory>(
          portable::makeOperationQueueFactory(), time_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(TimeHolding, OperationQueueContract, TimeHoldingQueueRig);

}  // namespace
}  // namespace ovinta::platform::contract
