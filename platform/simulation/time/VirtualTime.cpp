#include "platform/simulation/time/VirtualTime.h"

#include <utility>

#include "platform/simulation/time/VirtualTimeState.h"

namespace ovinta::platform::simulation {
namespace {

class VirtualClock : public Clock {
 public:
  explicit VirtualClock(std::shared_ptr<VirtualTimeState> state) : state_(std::move(state)) {}
  Date now() const override { return state_->now(); }

 private:
  std::shared_ptr<VirtualTimeState> state_;
};

class VirtualMainQueue : public MainQueue {
 public:
  explicit VirtualMainQueue(std::shared_ptr<VirtualTimeState> state) : state_(std::move(state)) {}
  bool isMain() const override { return state_->isMain(); }
  void async(Task task) override { state_->submit(TimeInterval::zero(), std::move(task)); }
  void asyncAfter(TimeInterval delay, Task task) override {
    state_->submit(delay, std::move(task));
  }
  void sync(Task task) override {
    if (state_->isMain()) {
      task();
    } else {
      state_->submitAndWait(std::move(task));
    }
  }

 private:
  std::shared_ptr<VirtualTimeState> state_;
};

}  // namespace

TimeHold::TimeHold(std::shared_ptr<VirtualTimeState> state) : state_(std::move(state)) {
  state_->addHold();
}

TimeHold::~TimeHold() { state_->releaseHold(); }

void TimeHold::runInTurn(const std::function<void()>& work) { state_->runInTurn(work); }

VirtualTime::VirtualTime(Date start) : state_(std::make_shared<VirtualTimeState>(start)) {}

VirtualTime::~VirtualTime() { state_->close(); }

std::shared_ptr<Clock> VirtualTime::clock() const { return std::make_shared<VirtualClock>(state_); }

std::shared_ptr<MainQueue> VirtualTime::mainQueue() const {
  return std::make_shared<VirtualMainQueue>(state_);
}

Date VirtualTime::now() const { return state_->now(); }

void VirtualTime::advance(TimeInterval interval, const std::function<bool()>& abandon) {
  state_->advance(interval, abandon);
}

void VirtualTime::runUntilIdle() { state_->runUntilIdle(); }

bool VirtualTime::waitUntil(const std::function<bool()>& condition,
                            std::chrono::milliseconds wallLimit) {
  return state_->waitUntil(condition, wallLimit);
}

std::unique_ptr<TimeHold> VirtualTime::hold() { return std::make_unique<TimeHold>(state_); }

std::function<std::unique_ptr<TimeHold>()> VirtualTime::holdMaker() const {
  return [state = state_] { return std::make_unique<TimeHold>(state); };
}

std::size_t VirtualTime::pendingTaskCount() const { return state_->pendingTaskCount(); }

}  // namespace ovinta::platform::simulation
